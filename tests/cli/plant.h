// A small design that has what is out of the ordinary.
#pragma once

namespace Tests {

// Two blocks stand below sheet B under one label, sheet A is excluded and stands first in the block but second in the
// user's order, print order 7 is given to three pages, and one name holds an escape character.
inline constexpr const char* Plant = R"({"format": "quill-design", "version": 1, "design": "plant",
"attributes": [["$$Internal_BUS_CONTENTS", "DB\tD[1:0],CLK\nX\tY\nY\tX,Z\n"], ["$$Internal_NET_LIMITER", "[]"]],
"blocks": [
{"index": "block:1", "name": "plant", "types": ["schematic"],
 "groups": [
  {"index": "group:1", "name": "A", "members": ["comp:4", "comp:5", "bus:3"],
   "attributes": [["$$Internal_CUSTOM_ORDER", "2"], ["ExcludeFromPrintout", "TRUE"]]},
  {"index": "group:2", "name": "B", "members": ["comp:1", "comp:2", "comp:3", "comp:6", "bus:1", "bus:2"],
   "attributes": [["$$Internal_CUSTOM_ORDER", "1"]]}],
 "comps": [
  {"index": "comp:1", "types": ["border", "titled"], "attributes": [["$$NotCommonProperty_@PRINTORDER", "7"]]},
  {"index": "comp:2", "label": "S", "name": "b", "types": ["hierarchical"], "child": "block:2",
   "attributes": [["REFDES", "U10"]]},
  {"index": "comp:3", "label": "S", "name": "a", "types": ["hierarchical"], "child": "block:3",
   "attributes": [["REFDES", "U2"]]},
  {"index": "comp:4", "types": ["border", "titled"], "attributes": [["$$NotCommonProperty_@PRINTORDER", "3"]]},
  {"index": "comp:5", "label": "T", "types": ["hierarchical"], "child": "block:2"},
  {"index": "comp:6", "label": "NET", "types": ["connector"], "partition": "lib", "definition": "comp:30"}],
 "buses": [
  {"index": "bus:1", "label": "D[1:0]"},
  {"index": "bus:2", "label": "DB",
   "attributes": [["KiCad Label", "DB{}"], ["KiCad Other Labels", "E[7]\n"], ["Other Labels", "E7\n$F[1:0]"]]},
  {"index": "bus:3", "label": "D[1:0]"}]},
{"index": "block:2", "name": "sub", "types": ["schematic"],
 "groups": [{"index": "group:3", "name": "1\u001b", "members": ["comp:10", "comp:11", "comp:12"]}],
 "comps": [
  {"index": "comp:10", "types": ["border", "titled"], "attributes": [["$$NotCommonProperty_@PRINTORDER", "7"]]},
  {"index": "comp:11", "label": "NET", "partition": "kicad", "definition": "comp:31", "pins": [{"index": "pin:1"}]},
  {"index": "comp:12", "label": "PIN", "types": ["connector"], "partition": "kicad", "definition": "comp:32"}],
 "nets": [{"index": "net:1", "label": "N2"}, {"index": "net:2"}, {"index": "net:3", "label": "N2", "pins": ["pin:1"]}]},
{"index": "block:3", "name": "aux", "types": ["schematic"],
 "groups": [{"index": "group:4", "name": "x", "members": ["comp:20"]}], "buses": [{"index": "bus:4"}],
 "comps": [{"index": "comp:20", "label": "ALONE", "types": ["connector"], "partition": "lib", "definition": "comp:30"}]},
{"index": "block:4", "name": "lib", "types": ["symbol"],
 "comps": [
  {"index": "comp:30", "name": "off.1", "types": ["symbol"]},
  {"index": "comp:31", "name": "global_label.input", "types": ["symbol"]},
  {"index": "comp:32", "name": "hierarchical_label.input", "types": ["symbol"]}]}],
"configurations": [{"index": "config:1", "name": "plant", "root": "block:1"},
                   {"index": "config:2", "name": "bench", "root": "block:3"},
                   {"index": "config:3", "name": "nothing"}]})";

}  // namespace Tests
