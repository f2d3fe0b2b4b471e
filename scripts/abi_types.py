#!/usr/bin/env python3
"""abi_types.py FILE: prints the types of QuillUtils70 that abidw has described in FILE, as text.

Of a class its size, its bases and fields by their offsets in bytes, and its virtual operations by their slots; of an
enumeration its numbers. Types of the standard library are named only: they are their maker's.
"""
import sys
import xml.etree.ElementTree as tree

OURS = ("Quill", "NQuillUtils", "Orin", "OrinUtils", "zolt")


class Reader:
    def __init__(self, root):
        self.types = {}  # of an id: the element and its scope
        self.lines = {}  # of a full name: what is printed
        self.enter(root, "")
        self.describe(root, "")

    def enter(self, parent, scope):
        for element in parent:
            inner = scope
            if element.tag in ("namespace-decl", "class-decl", "union-decl"):
                inner = scope + element.get("name", "") + "::"
            if element.get("id") and (element.get("id") not in self.types or not element.get("is-declaration-only")):
                self.types[element.get("id")] = (element, scope)
            self.enter(element, inner)

    def name(self, identity):
        if identity not in self.types:
            return "?"
        element, scope = self.types[identity]
        of = element.get("type-id")
        if element.tag == "pointer-type-def":
            return self.name(of) + "*"
        if element.tag == "reference-type-def":
            return self.name(of) + ("&" if element.get("kind") == "lvalue" else "&&")
        if element.tag == "qualified-type-def":
            return "const " + self.name(of) if element.get("const") else self.name(of)
        if element.tag == "array-type-def":
            return self.name(of) + "[" + ",".join(part.get("length", "") for part in element) + "]"
        if element.tag == "function-type":
            return "function"
        if element.tag == "typedef-decl" and scope.startswith(("std::", "__gnu_cxx::")):
            return "std::" + element.get("name")
        return scope + element.get("name", "?")

    def describe(self, parent, scope):
        for element in parent:
            name = scope + element.get("name", "")
            if element.tag in ("namespace-decl", "abi-instr", "member-type"):
                self.describe(element, name + "::" if element.tag == "namespace-decl" else scope)
            elif name.split("::")[0] not in OURS or element.get("is-declaration-only"):
                continue
            elif element.tag in ("class-decl", "union-decl"):
                self.lines[name] = self.class_lines(element, name)
                self.describe(element, name + "::")
            elif element.tag == "enum-decl" and element.get("name"):
                numbers = [f"{e.get('value'):>6}  {e.get('name')}" for e in element.findall("enumerator")]
                self.lines[name] = ["enumeration " + name, *numbers]

    def class_lines(self, element, name):
        size = int(element.get("size-in-bits", "0")) // 8
        lines = [f"class {name}, {size} bytes"]
        for base in element.findall("base-class"):
            offset = int(base.get("layout-offset-in-bits", "0")) // 8
            lines.append(f"{offset:6}  base {self.name(base.get('type-id'))}")
        for field in element.findall("data-member"):
            variable = field.find("var-decl")
            if field.get("layout-offset-in-bits") is not None:
                offset = int(field.get("layout-offset-in-bits")) // 8
                lines.append(f"{offset:6}  {variable.get('name')}: {self.name(variable.get('type-id'))}")
        slots = set()
        for member in element.findall("member-function"):
            if member.get("vtable-offset") is not None:
                slots.add((int(member.get("vtable-offset")), member.find("function-decl").get("name")))
        for slot, operation in sorted(slots):
            # Of a destructor, which takes two slots, only the gap tells where they are.
            lines.append(f"  slot {slot}  {operation}" if slot >= 0 else f"  virtual {operation}")
        return lines


reader = Reader(tree.parse(sys.argv[1]).getroot())
for _, text in sorted(reader.lines.items()):
    print("\n".join(text) + "\n")
