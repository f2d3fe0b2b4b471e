#include <map>

#include "tests/cli/markup.h"
#include "tests/cli/run_program.h"

namespace {

class Picture : public Tests::PlantTest {
protected:
    // What the picture holds between its style and its end, without the frame.
    std::string Items(const std::string& svg) const {
        const std::size_t first = svg.find("</g>\n", svg.find("<g class=\"frame\""));
        return svg.substr(first + 5, svg.rfind("</svg>") - first - 5);
    }
    void WriteSheet(const std::string& members, const std::string& content, const std::string& view = "{}") const {
        Write("sheet.json", R"({"format": "quill-design", "version": 1, "design": "b", "blocks": [
{"index": "block:1", "name": "b", "types": ["schematic", "drawn"], "groups": [
  {"index": "group:1", "name": "1", "members": [)" +
                                members + R"(], "view": )" + view + "}], " + content + R"(},
{"index": "block:2", "name": "lib", "types": ["symbol"], "comps": [
  {"index": "comp:90", "name": "BOX.1", "types": ["symbol"],
   "view": {"texts": [{"index": "text:90", "text": "in", "at": [1000000, 0], "style": {"height": 1000000}}],
            "rects": [{"index": "rect:90", "first": [-5000000, -3000000], "second": [5000000, 3000000],
                       "style": {"fill": "background", "width": 254000}}]},
   "pins": [
    {"index": "pin:90", "label": "7", "attributes": [["Pin Number", "7"], ["Pin Name", "EN"]],
     "drawn": [{"on": "comp:90", "body": {"at": [-8000000, 0], "inner": [-5000000, 0], "inverted": true}}]},
    {"index": "pin:91", "label": "Y", "drawn": [{"on": "comp:90", "body": {"at": [5000000, 2000000],
                                                                            "inner": [5000000, 2000000]}}]},
    {"index": "pin:92", "label": "LONG_NAME", "drawn": [{"on": "comp:90", "body": {"at": [0, -5000000],
                                                                                    "inner": [0, -3000000]}}]}]},
  {"index": "comp:91", "name": "flag.output", "types": ["symbol"]}]}],
"configurations": [{"index": "config:1", "name": "b", "root": "block:1"}]})");
    }
    std::string Drawn() const {
        const Tests::Outcome outcome = Run("render sheet.json 1 -o -");
        EXPECT_EQ(outcome.error, "");
        EXPECT_EQ(Tests::ReadMarkup(outcome.out).fault, "");
        return Items(outcome.out);
    }
};

TEST_F(Picture, SymbolsAreTurnedAndTheirTextsCanBeRead) {
    const std::pair<std::string, const char*> cases[] = {
        {R"("orientation": "0")", R"svg(<g class="body"><title>U1: &lt;5 &amp; &quot;6&quot;&gt;</title>
<rect x="950" y="470" width="100" height="60" class="area" style="stroke-width:2.54"/>
<text x="1010" y="497" font-size="13.5">in</text>
<circle cx="945" cy="500" r="5"/>
<path d="M920 500L940 500"/>
<text x="956" y="506.35" font-size="17.145" class="attribute">EN</text>
<text x="935" y="497" font-size="13.5" text-anchor="middle" class="attribute">7</text>
<text x="1044" y="526.35" font-size="17.145" text-anchor="end" class="attribute">Y</text>
<path d="M1000 450L1000 470"/>
<text x="1000" y="462.19" font-size="17.145" text-anchor="middle">U1</text>
<text x="1000" y="550.51" font-size="17.145" text-anchor="middle">&lt;5 &amp; &quot;6&quot;&gt;</text>
</g>
)svg"},
        {R"("orientation": "90", "mirrored": true)",
         R"svg(<g class="body"><title>U1: &lt;5 &amp; &quot;6&quot;&gt;</title>
<rect x="970" y="450" width="60" height="100" class="area" style="stroke-width:2.54"/>
<text x="997" y="510" font-size="13.5" text-anchor="end" transform="rotate(-90 997 510)">in</text>
<circle cx="1000" cy="445" r="5"/>
<path d="M1000 420L1000 440"/>
<text x="1006.35" y="456" font-size="17.145" text-anchor="end" transform="rotate(-90 1006.35 456)" class="attribute">EN</text>
<text x="997" y="435" font-size="13.5" text-anchor="middle" transform="rotate(-90 997 435)" class="attribute">7</text>
<text x="1026.35" y="544" font-size="17.145" transform="rotate(-90 1026.35 544)" class="attribute">Y</text>
<path d="M950 500L970 500"/>
<text x="1000" y="442.19" font-size="17.145" text-anchor="middle">U1</text>
<text x="1000" y="570.51" font-size="17.145" text-anchor="middle">&lt;5 &amp; &quot;6&quot;&gt;</text>
</g>
)svg"}};
    for (const auto& [orientation, want] : cases) {
        WriteSheet(R"("comp:1")",
                   R"("comps": [{"index": "comp:1", "label": "U1", "name": "BOX", "definition": "comp:90",
                       "attributes": [["VALUE", "<5 & \"6\">"]], "drawn": [
                       {"on": "group:1", "body": {"at": [100000000, 50000000], )" +
                       orientation + "}}]}]");
        EXPECT_EQ(Drawn(), want) << orientation;
    }
}

TEST_F(Picture, WiresAreDrawnWithTheirDotsAndLabels) {
    WriteSheet(R"("net:1", "bus:1", "comp:1", "comp:2")",
               R"("comps": [
  {"index": "comp:1", "label": "OUT", "definition": "comp:91", "types": ["connector"],
   "drawn": [{"on": "group:1", "body": {"at": [0, 0], "orientation": "180"}}]},
  {"index": "comp:2", "label": "P1", "drawn": [{"on": "group:1", "body": {"at": [0, -9000000]},
    "label": {"at": [0, -20000000], "style": {"horizontal": "centre"}}}]}],
 "nets": [{"index": "net:1", "label": "N\u0001", "drawn": [{"on": "group:1", "label": {"at": [0, 0], "style":
    {"orientation": "270"}}}], "pieces": [{"index": "piece:1", "on": "group:1",
   "joints": [[1, 0, 0], [2, 10000000, 0], [3, 20000000, 0], [4, 10000000, 5000050, "pin:1"]],
   "segments": [[1, 1, 2], [2, 2, 3], [3, 2, 4], [4, 2, 99]]}]}],
 "buses": [{"index": "bus:1", "label": "D[1:0]", "drawn": [{"on": "group:1", "body": {
   "joints": [[1, 0, 9000000], [2, 20000000, 9000000]], "segments": [[1, 1, 2]],
   "style": {"width": 500000, "pattern": "dash"}}}]}])",
               R"({"arcs": [{"index": "arc:1", "start": [0, 0], "middle": [10000000, 10000000], "end": [0, 20000000]}],
      "texts": [{"index": "text:1", "text": "two\n~{lines}", "at": [0, 0], "style": {"vertical": "top"}},
                {"index": "text:2", "text": "hidden", "style": {"visible": false}}]})");
    EXPECT_EQ(Drawn(), R"svg(<g class="note">
<path d="M0 0A100 100 0 1 1 0 200"/>
<text x="0" y="16.51" font-size="17.145">two</text>
<text x="0" y="36.83" font-size="17.145"><tspan text-decoration="overline">lines</tspan></text>
</g>
<g class="body"><title>P1</title>
<rect x="-50.8" y="-128.1" width="101.6" height="76.2" class="area"/>
<text x="0" y="-203.81" font-size="17.145" text-anchor="middle">P1</text>
</g>
<g class="net"><title>Net N�</title>
<text x="16.51" y="0" font-size="17.145" text-anchor="end" transform="rotate(-90 16.51 0)">N�</text>
<path d="M0 0L100 0M100 0L200 0M100 0L100 50.0005"/>
<circle cx="100" cy="0" r="5" class="filled"/>
</g>
<g class="bus"><title>Bus D[1:0]</title>
<path d="M0 90L200 90" style="stroke-width:5;stroke-dasharray:12 8"/>
</g>
<g class="connector"><title>OUT, stands alone</title>
<path d="M0 12.7L-48.895 12.7L-61.595 0L-48.895 -12.7L0 -12.7Z" class="area"/>
<text x="-24.4475" y="6.35" font-size="17.145" text-anchor="middle">OUT</text>
</g>
)svg");
}

TEST_F(Picture, ErrorsLeaveTheFileAsItWas) {
    Write("there.svg", "as it was");
    Check({{"render plant.json 9 -o there.svg", 2, "", "quill: There is no page 9\n"},
           {"render plant.json 1 --config nothing -o there.svg", 2, "",
            "quill: Configuration nothing has no root block\n"},
           {"render plant.json 1 -o none/x.svg", 2, "", "quill: none/x.svg: No such file or directory\n"},
           {"render plant.json 1 -o - > /dev/full", 2, "", "quill: Standard output cannot be written\n"}});
    EXPECT_EQ(Read("there.svg"), "as it was");
    // The farthest that a design can say, and an excluded page, which has a name only.
    WriteSheet("", "\"nets\": []", R"({"circles": [{"index": "circle:1", "centre": [9223372036854775807,
      -9223372036854775808], "radius": 9223372036854775807}]})");
    EXPECT_NE(Drawn().find(R"(<circle cx="100000000" cy="-100000000" r="100000000"/>)"), std::string::npos);
    Check({{"render plant.json A -o there.svg", 0, ""}});
    EXPECT_NE(Read("there.svg").find(">Nothing is drawn on this sheet</text>"), std::string::npos);
    EXPECT_NE(Read("there.svg").find("<title>Excluded page: sheet A of plant at /</title>"), std::string::npos);
}

class Report : public Tests::PlantTest {
protected:
    // Every document can be read, and every link leads to an element that is there.
    void CheckLinks(const std::string& folder) const {
        std::map<std::string, Tests::Markup> documents;
        for (const auto& entry : std::filesystem::directory_iterator(Path(folder)))
            if (entry.path().extension() == ".html")
                documents[entry.path().filename().string()] = Tests::ReadMarkup(Read(entry.path().string()));
        ASSERT_GT(documents.size(), 1U) << folder;
        for (const auto& [name, document] : documents) {
            EXPECT_EQ(document.fault, "") << folder << '/' << name;
            for (const std::string& href : document.hrefs) {
                const std::size_t hash = std::min(href.find('#'), href.size());
                const std::string file = hash == 0 ? name : href.substr(0, hash);
                if (file == "style.css") continue;
                const auto target = documents.find(file);
                const bool leads = target != documents.end() &&
                                   (hash == href.size() || target->second.ids.count(href.substr(hash + 1)) != 0);
                EXPECT_TRUE(leads) << folder << '/' << name << ": " << href;
            }
        }
    }
};

TEST_F(Report, TreeAndConnectorsAreLinks) {
    Check({{"report plant.json -o site", 0, ""},
           {"--help > /dev/null; cd site && ls -A", 0,
            ".quill-report\nindex.html\npage-1.html\npage-2.html\npage-3.html\nstyle.css\n"}});
    CheckLinks("site");
    const std::string index = Read("site/index.html");
    EXPECT_EQ(index.substr(index.find("<main>")), R"(<main>
<p>3 pages, and 2 excluded from printing. 3 sheet connectors.</p>
<ul class="tree">
<li><a href="page-1.html">1 plant</a> <span class="quiet">sheet B of plant at /</span>
<ul>
<li><a href="page-2.html">2 sub</a> <span class="quiet">sheet 1� of sub at /S</span></li>
<li><a href="page-3.html">3 aux</a> <span class="quiet">sheet x of aux at /S</span></li>
</ul></li>
<li>plant <span class="quiet">sheet A of plant at /, excluded from printing</span>
<ul>
<li>sub <span class="quiet">sheet 1� of sub at /T, excluded from printing</span></li>
</ul></li>
</ul>
</main>
</body>
</html>
)");
    const std::string page = Read("site/page-2.html");
    EXPECT_EQ(page.substr(page.find("</svg>")), R"(</svg>
</div>
<h2>Sheet connectors</h2>
<table>
<tr><th scope="col">Label</th><th scope="col">Leads to</th></tr>
<tr id="o-7-0-11"><td>NET</td><td><a href="page-1.html#o-7-0-6">Page 1</a></td></tr>
</table>
</main>
</body>
</html>
)");
}

TEST_F(Report, WhatLeadsUpDownAndAcrossSaysWhere) {
    ASSERT_EQ(Run("report '" QUILL_EXAMPLES "/lamp/lamp.kicad_sch' -o site"), (Tests::Outcome{0, ""}));
    const std::string top = Read("site/page-1.html");
    const std::string left = Read("site/page-2.html");
    const auto item = [](const std::string& page, const char* title) {
        const std::size_t at = page.find(std::string("<title>") + title);
        const std::size_t begin = page.rfind('\n', at) + 1;
        return page.substr(begin, page.find("</g>\n", at) + 5 - begin);
    };
    EXPECT_EQ(
        item(top, "Left"),
        R"svg(<g class="hierarchy" id="o-7-0-2"><title>Left: channel, leads to page 2</title><a href="page-2.html">
<rect class="halo" x="879" y="477.68" width="324.8" height="261.3"/>
<rect x="889" y="508" width="304.8" height="203.2"/>
<text x="895" y="615.95" font-size="17.145" class="attribute">DRIVE</text>
<text x="889" y="732.79" font-size="17.145" class="attribute">channel.kicad_sch</text>
<text x="889" y="496.57" font-size="17.145" class="attribute">Left</text>
<text x="1185.8" y="699.39" font-size="17.145" text-anchor="end">↓ 2</text>
</a></g>
)svg");
    EXPECT_EQ(
        item(left, "DRIVE: "),
        R"svg(<g class="connector" id="o-7-0-9"><title>DRIVE: hierarchical_label, leads to page 1</title><a href="page-1.html#o-7-0-2">
<rect class="halo" x="368.08" y="485.3" width="149.92" height="45.4"/>
<path d="M508 508L495.3 520.7L422.275 520.7L422.275 495.3L495.3 495.3Z" class="area"/>
<text x="458.7875" y="514.35" font-size="17.145" text-anchor="middle">DRIVE</text>
<text x="414.275" y="514.35" font-size="17.145" text-anchor="end">↑ 1</text>
</a></g>
)svg");
    EXPECT_EQ(
        item(left, "ENABLE: "),
        R"svg(<g class="connector" id="o-7-0-10"><title>ENABLE: global_label, leads to pages 3, 1</title><a href="page-3.html#o-7-0-10">
<rect class="halo" x="319.82" y="561.5" width="198.18" height="45.4"/>
<path d="M508 584.2L495.3 596.9L410.21 596.9L410.21 571.5L495.3 571.5Z" class="area"/>
<text x="452.755" y="590.55" font-size="17.145" text-anchor="middle">ENABLE</text>
<text x="402.21" y="590.55" font-size="17.145" text-anchor="end">→ 3, 1</text>
</a></g>
)svg");
    EXPECT_EQ(left.substr(left.find("<header>"), left.find("<main>") - left.find("<header>")), R"svg(<header>
<nav aria-label="Way to this page"><a href="index.html">lamp</a><a href="page-1.html">1 lamp</a></nav>
<nav aria-label="Neighbouring pages"><a href="page-1.html" rel="prev">Previous page: 1 lamp</a><a href="page-3.html" rel="next">Next page: 3 channel</a></nav>
<h1>Page 2: channel <span class="quiet">sheet 1 of channel at /Left</span></h1>
</header>
)svg");

    // Of many other ends the next few are named.
    Write("many.json", Read(QUILL_TEST_DATA "/many_ends.json"));
    EXPECT_NE(Run("render many.json 4 -o -").out.find("<title>NET, leads to pages 5, 6, 1, 2, \u2026</title>"),
              std::string::npos);
    ASSERT_EQ(Run("report many.json -o site"), (Tests::Outcome{0, ""}));
    EXPECT_NE(
        Read("site/page-4.html")
            .find(R"(<td><a href="page-5.html#o-7-0-5">Page 5</a> <span class="quiet">also on)"
                  R"(</span> <a href="page-6.html">6</a> <a href="page-1.html">1</a> <a href="page-2.html">2</a> )"
                  R"(<span class="quiet">and more</span></td>)"),
        std::string::npos);
}

TEST_F(Report, TakesThePlaceOfAnEarlierReportOnly) {
    Write("file", "mine");
    Check({
        {"report plant.json -o none/site", 2, "", "quill: none/site: No such file or directory\n"},
        {"report plant.json -o file", 2, "", "quill: file: Not a directory\n"},
        {"report plant.json -o .", 2, "", "quill: .: Is neither empty nor an earlier report\n"},
        {"report none.json -o site", 2, "", "quill: none.json: No such file or directory\n"},
        {"report plant.json -o site --config none", 2, "", "quill: The design has no configuration called none\n"},
        {"--help > /dev/null; ls -A", 0, "error\nfile\nout\nplant.json\n"},
    });

    std::filesystem::create_directory(Path("site"));
    Check({{"report plant.json -o site/", 0, ""}});
    // The pages of another configuration are fewer; those of the first are gone.
    const char* const lonely =
        "quill: The configuration does not bear the name of its root block, so its sheet connectors lead nowhere\n";
    Check({{"report plant.json -o site --config bench", 0, "", lonely},
           {"--help > /dev/null; ls -A site", 0, ".quill-report\nindex.html\npage-1.html\nstyle.css\n"}});
    Write("site/mine", "mine");
    Check({{"report plant.json -o site", 2, "", "quill: site: Holds mine, which is not of the report\n"},
           {"--help > /dev/null; ls -A site", 0, ".quill-report\nindex.html\nmine\npage-1.html\nstyle.css\n"},
           {"--help > /dev/null; ls -A", 0, "error\nfile\nout\nplant.json\nsite\n"}});
}

TEST_F(Report, WholeDesignsCanBeReadAndFollowed) {
    const std::string examples = QUILL_EXAMPLES;
    const std::string designs = QUILL_DESIGNS_FOLDER;
    std::vector<std::string> roots{examples + "/vibration-recorder.json", examples + "/lamp/lamp.kicad_sch"};
    for (const char* const root :
         {"butterstick/ButterStick", "dispensy/dispensy", "eurorack-pmod-r3.1/eurorack-pmod-pcb",
          "glasgow-revc/glasgow", "kibot-test-v5/test_v5", "kicad6-video/video", "neotron-pico/neotron-pico",
          "oresat-c3/oresat-c3", "oresat-rw-rev5/controller_rev5.0_flat", "thunderscope-5.3/Thunderscope_Rev5.3"}) {
        const std::string path = designs + '/' + root + ".kicad_sch";
        if (std::filesystem::exists(path)) roots.push_back(path);
    }
    for (const std::string& root : roots) {
        EXPECT_EQ(Run("report '" + root + "' -o site").code, 0) << root;
        CheckLinks("site");
    }
}

}  // namespace
