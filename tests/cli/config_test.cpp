// The commands that ask the installation, files and folders instead of a design.
#include "tests/cli/run_program.h"

namespace {

class Config : public Tests::ProgramTest {
protected:
    Config() {
        setenv("TOVE_HOME", "/opt/Tove", 1);
        setenv("QUILL_WDIRS", "/w/one:/opt/tove/standard:/w/two\x1B", 1);
    }
};

TEST_F(Config, IsShown) {
    Check({
        {"--version", 0, "quill 70.0.0\n"},
        {"flows", 0, R"(Flow     Type     Libraries  Settings file   Map file   Templates
halyard  QS       central    settings.xml    map.cfg    /opt/tove/standard/templates/quillsketch/halyard
netlist  NETLIST  symbol     nlsettings.xml  mapnl.cfg  /opt/tove/standard/templates/quillsketch/netlist
cobalt   Cobalt   central    cbsettings.xml  map.cfg    /opt/tove/standard/templates/quillsketch/cobalt
Brio     Brio     central    settings.xml    map.cfg    /opt/tove/standard/templates/quillsketch/Brio
)"},
        {"flows NetList --json", 0,
         R"({"name": "netlist", "type": "NETLIST", "centralLibrary": false, "symbolLibraries": true, )"
         R"("settingsFile": "nlsettings.xml", "mapFile": "mapnl.cfg", )"
         R"("templates": "/opt/tove/standard/templates/quillsketch/netlist", "attributes": {)"
         R"("globalSignalName": "NETNAME", "partNumber": "DEVICE", "refDesignator": "REFDES", "level": "LEVEL", )"
         R"("vhdlModel": "VHDL Model", "verilogModel": "Verilog Model", "vhdlType": "VHDL_TYPE", )"
         R"("verilogFile": "Verilog File", "vhdlFile": "VHDL File", "pinNumber": "#", "pinType": "PINTYPE", )"
         R"("cellName": "Cell Name", "defaultCellName": "Default Cell Name"}})"},
        {"flows qs | head -n 3", 0,
         "Attribute         Name\nglobalSignalName  Global Signal Name\npartNumber        Part Number\n"},
        {"flows --json | grep -c '\"templates\": \"/opt/tove/'", 0, "4"},
        {"flows drift", 2, "", "quill: There is no flow called drift; \"quill flows\" lists them\n"},
        {"wdirs", 0, "/w/one\n/opt/tove/standard\n/w/two\\x1B\n"},
        {"wdirs netlist --json", 0,
         R"(["/w/one", "/w/two\u001b", "/opt/tove/standard/templates/quillsketch/netlist", "/opt/tove/standard"])"},
        {"wdirs drift", 2, "", "quill: There is no flow called drift; \"quill flows\" lists them\n"},
        {"font '7|Arial||0|700|0|0|1'", 0, R"(Field      Value
text       7|Arial|0|700|0|0|1|0|0
style      7
custom     true
face       Arial
styleName
weight     700
strikeout  0
underline  0
bold       1
italic     0
charset    0
)"},
        {"font 12 --json", 0, R"({"text": "12", "style": 12, "custom": false})"},
    });
    unsetenv("TOVE_HOME");
    Check({{"wdirs netlist", 0, "/w/one\n/opt/tove/standard\n/w/two\\x1B\n"}});
}

TEST_F(Config, FilesAreRead) {
    Write("map.cfg", "# \"RESISTOR\" \"R\" C=\"C\" \"1\"\n\"C\" \"C\x1B\" \"odd\"\n");
    Write("SymbolLibs/analog/lib.cfg", "alias Analog parts\n");
    Write("SymbolLibs/analog/sym/R.1", "");
    Write("SymbolLibs/analog/sym/notes.txt", "");
    Write("SymbolLibs/digital/sym.lib", "");
    Write("SymbolLibs/digital/sym.tbl", "NAND.1                        not a name                    INV.2");
    Check({
        {"map map.cfg", 0, "Key       Value\nC         C\\x1B\nRESISTOR  R\nodd\n"},
        {"map map.cfg --json", 0, R"({"C": "C\u001b", "RESISTOR": "R", "odd": ""})"},
        {"map none.cfg", 2, "", "quill: none.cfg: No such file or directory\n"},
        {"map SymbolLibs", 2, "", "quill: SymbolLibs: Is a directory\n"},
        {"libraries central.lmc", 0, R"(Library       Symbols in  Path
Analog parts  files       ./SymbolLibs/analog
digital       table       ./SymbolLibs/digital
)"},
        {"libraries $PWD/central.lmc --json | grep -c \"$PWD/SymbolLibs/analog\"", 0, "1"},
        {"libraries none/central.lmc", 2, "",
         "quill: none/central.lmc: There is no folder none/SymbolLibs beside it\n"},
        {"symbols SymbolLibs/analog", 0, "R.1\n"},
        {"symbols SymbolLibs/digital/ --json", 0, R"({"table": true, "symbols": ["NAND.1"]})"},
        {"symbols SymbolLibs", 2, "",
         "quill: SymbolLibs: Is no symbol library: it has neither a folder sym nor sym.tbl and sym.lib\n"},
    });
}

TEST_F(Config, FoldersAreWatched) {
    // `end` comes after the first change and has the watch as $p; wanted are the exit code and then the lines.
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"--count 1", "true", "0\nlib has changed\n"},
        {"--json", "kill -TERM $p", "0\n{\"change\":1,\"folder\":\"lib\"}\n"},
        {"", "rm -r lib", "2\nlib has changed\nquill: lib: No such file or directory\n"},
    };
    for (const auto& [options, end, want] : cases) {
        Write("lib/file", "");
        EXPECT_EQ(Shell(std::string("rm -f lines; '" QUILL_PROGRAM "' watch lib --timeout 60 ") + options +
                        " > lines 2> errors & p=$!; until [ -s lines ] || ! kill -0 $p; do echo x >> lib/file; "
                        "sleep 0.02; done; " +
                        end + "; wait $p; echo $?; head -n 1 lines; cat errors")
                      .out,
                  want)
            << options;
    }
    Write("lib/file", "");
    Check({
        {"watch lib --count 1 --timeout 0.01", 1, ""},
        {"watch lib --timeout 0.01", 0, ""},
        {"watch lib/file", 2, "", "quill: lib/file: Is no folder\n"},
        {"watch lib --count 0", 2, "",
         "quill: --count: Value 0 not in range 1 to 1000000000. \"quill --help\" says how it is used.\n"},
        {"watch none", 2, "", "quill: none: No such file or directory\n"},
    });
}

}  // namespace
