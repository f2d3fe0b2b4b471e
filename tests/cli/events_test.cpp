// quill events: what is heard of edits, and what is refused.
#include "tests/cli/run_program.h"

namespace {

class Events : public Tests::PlantTest {
protected:
    void CheckScript(const char* options, const std::string& script, const Tests::Outcome& want) const {
        Write("edits", script);
        EXPECT_EQ(Run("events plant.json edits --no-times " + std::string(options)), want) << script;
    }
};

TEST_F(Events, AreHeardInTheOrderOfTheEditsWithTheLinesThatRaisedThem) {
    CheckScript("", R"(# The plant, taken apart.
add net plant NEW as $net
add bus plant "B 1"
add piece plant NEW B as $piece
draw $piece 0,0 1000,-5
label net plant NEW OLD

enter sheet plant A bus plant "B 1"    # beside T
set sheet plant A $$Internal___ReadOnlySheet TRUE
set block plant $$Internal___ReadOnlySheet TRUE
set block plant $$Internal_Design_Name main
rename block plant mill
type comp mill T ripper hierarchical
begin
rip comp mill T bus mill "B 1"
rollback
label @comp:5 T2
delete $piece
delete $net
delete bus mill "B 1"
delete comp mill T2
delete sheet mill A
delete block aux
)",
                {0, R"(Line  Observer   Event                    Arguments
   2  schematic  OnAddNet                 object net:4, block block:1, label NEW
   3  schematic  OnAddBus                 object bus:5, block block:1, label "B 1"
   4  schematic  OnAddNetQuill            object piece:1, block block:1, label NEW
   5  schematic  OnBeforeNetQuillSetData  object piece:1, net net:4, block block:1, data {"id":0,"joints":[],"segments":[],"width":0,"pattern":"solid","fill":"none"}
   5  schematic  OnAfterNetQuillSetData   object piece:1, net net:4, block block:1, data {"id":0,"joints":[[1,0,0,""],[2,1000,-5,""]],"segments":[[1,1,2]],"width":0,"pattern":"solid","fill":"none"}
   6  schematic  OnBeforeLabelChange      object net:4, block block:1, label NEW
   6  schematic  OnAfterLabelChange       object net:4, block block:1, label OLD
   9  schematic  OnReadOnlyFlagChange     block block:1
  10  schematic  OnReadOnlyFlagChange     block block:1
  11  navigator  OnDesignRootChange       block block:1, before "", after main
  12  schematic  OnBlockNameChange        block block:1, before plant, after mill
  15  navigator  OnBeforeRipBus           bus bus:5, block block:1, groups ["group:1"]
  15  navigator  OnAfterRipBus            bus bus:5, block block:1, groups ["group:1"]
  16  navigator  OnBeforeRipBus           bus bus:5, block block:1, groups ["group:1"]
  16  navigator  OnAfterRipBus            bus bus:5, block block:1, groups ["group:1"]
  17  schematic  OnBeforeLabelChange      object comp:5, block block:1, label T
  17  schematic  OnAfterLabelChange       object comp:5, block block:1, label T2
  18  schematic  OnDeleteNetQuill         object piece:1, block block:1, label OLD
  19  schematic  OnDeleteNet              object net:4, block block:1, label OLD
  20  schematic  OnDeleteBus              object bus:5, block block:1, label "B 1"
  20  navigator  OnDeleteBus              bus bus:5, block block:1, groups ["group:1"]
  21  schematic  OnDeleteBlockComp        comp comp:5, block block:1, child block:2, instance 5
  22  schematic  OnDeleteGroup            group group:1, owner block:1, name A, type 2
  22  navigator  OnDeleteBlock            object group:1
  23  schematic  OnDeleteGroup            group group:4, owner block:3, name x, type 2
  23  navigator  OnDeleteBlock            object group:4
  23  schematic  OnDeleteBlockComp        comp comp:20, block block:3, child "", instance 20
  23  schematic  OnDeleteBus              object bus:4, block block:3, label ""
  23  navigator  OnDeleteBus              bus bus:4, block block:3, groups []
  23  schematic  OnDeleteBlock            block block:3, name aux
  23  navigator  OnDeleteBlock            object block:3
)"});
}

// What concerns pins is not relevant enough to be handed on.
TEST_F(Events, OfTheDatabaseAreHeardToo) {
    CheckScript("--all", R"(begin import
child comp plant T
connect net sub "" pin sub NET ""
commit
lock block plant block aux
unlock
)",
                {0, R"(Line  Observer  Event                Arguments
   1  database  OnBeforeTransaction  transaction 1
   2  database  OnBeforeChange       object comp:5, kind 24, undo false
   2  database  OnAfterChange        object comp:5, kind 24, undo false
   4  database  OnAfterTransaction
   5  database  OnMultiLock          objects ["block:1","block:3"], project plant.json, client edits
   6  database  OnMultiUnLock        objects ["block:1","block:3"], project plant.json, client edits
)"});
}

TEST_F(Events, ThatAreKeptAreHeardAgain) {
    Write("edits",
          "label net sub \"\" \"a\xFF\\n\"\nadd piece sub \"a\xFF\\n\" \"1\x1B\" as $p\ndraw $p 1,2 3,4\nlock block "
          "sub\n");
    const Tests::Outcome heard = Run("events plant.json edits --all --json --record record");
    const std::string record = Read("record");
    EXPECT_EQ(Run("events --replay record --json"), heard);
    EXPECT_NE(record.find(R"("label":{"hex":"61FF0A"})"), std::string::npos) << record;
    EXPECT_EQ(record.substr(0, record.find('\n')), R"({"format":"quill-events","version":1,"design":"plant"})");
}

TEST_F(Events, LeaveTheDesignAlone) {
    Write("edits", "rename block sub other\n");
    for (const char* design : {"plant.json", QUILL_STORED_DESIGN}) {
        if (*design == '\0') continue;  // this build has no design files
        Run(std::string("export plant.json -o ") + design);
        const std::string before = Read(design);
        EXPECT_EQ(Run(std::string("events ") + design + " edits --no-times"),
                  (Tests::Outcome{0,
                                  "Line  Observer   Event              Arguments\n"
                                  "   1  schematic  OnBlockNameChange  block block:2, before sub, after other\n"}));
        EXPECT_EQ(Read(design), before);
    }
}

TEST_F(Events, AreNotRaisedByAScriptThatIsWrongInItself) {
    const std::pair<const char*, const char*> cases[] = {
        {"fly net plant A", "There is no command fly"},
        {"delete", "An object is missing"},
        {"delete nut plant A", "There is no kind of object nut"},
        {"delete net plant", "A name of the object is missing"},
        {"delete \"net\" plant A", "There is no kind of object net"},
        {"delete @net", "@net is no index"},
        {"delete $x", "No line before gives $x"},
        {"add net plant A as x", "A variable begins with $, unlike x"},
        {"add net plant A B", "There is too much on the line, beginning with B"},
        {"rename block plant", "A text is missing"},
        {"label net plant \"A", "The closing quotation mark is missing"},
        {"label net plant A \"\\x\"", "Behind a backslash stands one of \" \\ n t"},
        {"label net plant \"A\"B C", "A blank has to follow the closing quotation mark"},
        {"set comp plant T N V kin", "There is no family of attributes kin"},
        {"draw @piece:1 1,2 3", "3 is no point; one looks like 25400000,-1270000"},
        {"begin", "The transaction is not ended"},
        {"commit", "There is no transaction"},
        {"begin\nbegin", "There is a transaction already"},
    };
    for (const auto& [script, reason] : cases) {
        const int line = std::string_view(script) == "begin\nbegin" ? 3 : 2;
        CheckScript("", "delete block sub\n" + std::string(script),
                    {2, "", "quill: edits:" + std::to_string(line) + ": " + reason + "\n"});
    }
}

TEST_F(Events, EndAtALineThatFailsWithItsTransactionTakenBack) {
    const std::pair<const char*, const char*> cases[] = {
        {"delete net plant X", "There is no net plant X"},
        {"delete net sub N2", "There are several objects that could be net sub N2"},
        {"delete net nowhere X", "There is no block nowhere"},
        {"add design", "An object is added by its kind and name, not as design"},
        {"delete design", "design is nothing that can be deleted"},
        {"type block sub flat", "There is no type flat"},
        {"connect net sub \"\" comp plant S", "There are several objects that could be comp plant S"},
        {"connect net sub \"\" comp plant T", "net sub \"\", comp plant T: There is no such object"},
        {"delete @net:99", "@net:99: There is no such object"},
    };
    for (const auto& [script, reason] : cases)
        CheckScript("--record record", "begin\nrename block aux b\n" + std::string(script) + "\ncommit\n",
                    {2,
                     "Line  Observer   Event              Arguments\n"
                     "   2  schematic  OnBlockNameChange  block block:3, before aux, after b\n"
                     "   3  schematic  OnBlockNameChange  block block:3, before b, after aux\n",
                     std::string("quill: edits:3: ") + reason + "\n"});
    EXPECT_FALSE(std::filesystem::exists(Path("record")));
}

TEST_F(Events, OfARecordThatIsDamagedAreRefused) {
    const std::string heading = "{\"format\":\"quill-events\",\"version\":1,\"design\":\"\"}\n";
    const auto event = [](const char* name, const char* arguments) {
        return std::string(R"({"line":1,"waited":0,"observer":"schematic","event":")") + name +
               "\",\"arguments\":" + arguments + "}\n";
    };
    const std::pair<std::string, const char*> cases[] = {
        {"", "1: This is no JSON"},
        {"{}\n", "1: format is missing"},
        {"{\"format\":\"quill-events\",\"version\":2}\n", "1: Version 2 of records is not known"},
        {heading + event("OnAddNut", "{}"), "2: There is no event OnAddNut of the observer schematic"},
        {heading + event("OnAddNet", "{\"object\":\"net:1\",\"block\":\"\"}"), "2: label is missing"},
        {heading + event("OnReadOnlyFlagChange", "{\"block\":\"bl:1\"}"), "2: \"bl:1\" is not an index"},
        {heading + event("OnAddNet", "{\"object\":7}"), "2: 7 is not a text"},
        {heading + event("OnAddNet", "{\"object\":[[[[[[[[[[1]]]]]]]]]]}"), "2: Is nested too deep"},
        {heading + event("OnDeleteBlockComp", "{\"comp\":\"\",\"block\":\"\",\"child\":\"\",\"instance\":4294967296}"),
         "2: 4294967296 is not a number that fits"},
    };
    for (const auto& [record, reason] : cases) {
        Write("record", record);
        EXPECT_EQ(Run("events --replay record"),
                  (Tests::Outcome{2, "", std::string("quill: record:") + reason + "\n"}));
    }
    EXPECT_EQ(Run("events").error, "quill: DESIGN and EDITS are required, or --replay\n");
}

}  // namespace
