#!/usr/bin/env python3
"""reference_filter.py HEADER: prints the header with its comments as Doxygen takes them.

The headers carry plain comments. One that stands directly above a declaration speaks of it, and of what follows without
a blank line between: outside of classes of all that, in a class of its overloads and counterparts (MoveUp and MoveDown).
One behind a declaration speaks of that alone; one between blank lines heads the section below it. A member without any
of these is described with its class. A class, and a name outside of classes, has to have a comment that speaks of it or
of its section: nothing else covers those.
"""
import re
import sys

SCOPE = re.compile(r"^(?:inline\s+)?(namespace|class|struct|union|enum class|enum)\b\s*([\w:<>]*)")
MACRO = re.compile(r"\b([A-Z]+_EXPORT|QUILL_[A-Z_]+(\([^)]*\))?)\s*")
COMMON_WORDS = {"get", "set", "is", "has", "can", "add", "delete", "remove", "make", "on"}
NOT_DECLARED = re.compile(r"^(#(?!define)|}|(public|protected|private):|friend (class|struct)\b|using namespace\b|static_assert\b|namespace\b)")


def escaped(text):
    """The text without what Doxygen would take for a command or a link. Code between backticks stays as it is."""
    parts = text.split("`")
    for i in range(0, len(parts), 2):
        parts[i] = re.sub(r"([\\@<>#&$%])", r"\\\1", parts[i]).replace("::", r"\::")
    return "`".join(parts)


def split_comment(line):
    """The code of a line, and the text of the comment behind it or None."""
    quote = None
    i = 0
    while i < len(line):
        char = line[i]
        if quote:
            if char == "\\":
                i += 1
            elif char == quote:
                quote = None
        elif char in "\"'" and not (char == "'" and i and line[i - 1].isalnum()):
            quote = char
        elif line.startswith("//", i):
            return line[:i].rstrip(), line[i + 2:].strip()
        i += 1
    return line.rstrip(), None


def without_literals(code):
    return re.sub(r'"(\\.|[^"\\])*"|\'(\\.|[^\'\\])\'', '""', code)


def name_of(code):
    """The name that a line declares, as far as the line tells."""
    code = MACRO.sub("", code)
    match = re.search(r"(operator\s*[^\s\w(]+|~?\w+)\s*\(", code) or re.search(r"(\w+)\s*(=.*|\{.*)?;?$", code)
    return match.group(1) if match else code


def are_counterparts(first, second):
    """Whether two names differ in their first word or, when that says something, in what follows it."""
    words = [re.findall(r"^[a-z]+|[A-Z][a-z]*|\W+|_?[0-9]+", name) for name in (first, second)]
    if first == second or first.startswith("operator") and second.startswith("operator"):
        return True
    if not words[0] or not words[1]:
        return False
    if len(words[0]) > 1 and words[0][1:] == words[1][1:]:
        return True
    return words[0][0] == words[1][0] and words[0][0].lower() not in COMMON_WORDS


class Scope:
    def __init__(self, kind, name=""):
        self.kind = kind
        self.name = name
        self.above = []       # the comment that covers the scope, and what follows it without a blank line
        self.section = []     # the comment that heads the members below it
        self.grouped = False  # whether a group of members with a heading is open
        self.headed = False   # whether that is a heading, which holds until the next one


class Filter:
    def __init__(self, lines):
        self.lines = lines
        self.out = []
        self.scopes = [Scope("namespace")]
        self.declaration = ""  # what has been read of the one that is not at its end
        self.parentheses = 0
        self.above = []        # the comment that covers the declarations of this run
        self.named = ""        # the first of them
        self.end = ""          # what goes behind the line

    @staticmethod
    def document(indent, lines):
        return [indent + "/// " + line for line in lines]

    def cover(self, code):
        """What documents the declaration that begins here."""
        scope = self.scopes[-1]
        name = name_of(code)
        self.named = self.named or name
        if self.above and (scope.kind in ("namespace", "enum") or are_counterparts(self.named, name)):
            if not scope.headed and scope.kind == "namespace":
                scope.section = []  # a comment on its own speaks of what comes next only
            return self.above
        if scope.section or scope.kind == "namespace":
            return scope.section
        return ["Described with " + scope.name + "."]

    @staticmethod
    def markdown(comment):
        """The comment as Doxygen's dialect has it: lines set in by two blanks are the points of a list."""
        text = []
        for line in comment:
            if line.startswith("    ") and (not text or re.search(r"(^|:)$|^    ", text[-1])):
                text += [line] if not text or text[-1].startswith("    ") else ["", line]
            elif re.match(r"^  \S", line):
                text.append("- " + escaped(line.strip()))
            else:
                text.append(escaped(line.strip()))
        return text

    def run(self):
        i = 0
        while i < len(self.lines):
            stripped = self.lines[i].strip()
            if stripped.startswith("//") and not self.declaration:
                comment = []
                first = i
                while i < len(self.lines) and self.lines[i].strip().startswith("//"):
                    comment.append(self.lines[i].strip()[2:].removeprefix(" "))
                    i += 1
                self.take_comment(comment, first, self.lines[i].strip() if i < len(self.lines) else "")
                continue
            # Doxygen cannot place a specialisation for the standard library, and nobody looks for it.
            if i + 1 < len(self.lines) and self.lines[i + 1].startswith("struct std::"):
                self.out.append("/// @cond")
            self.take_line(self.lines[i])
            if self.end:
                self.out.append(self.end)
                self.end = ""
            i += 1
        return self.out

    def take_comment(self, comment, first, following):
        heading = re.match(r"^-+ (.*?) -+$", comment[0])
        scope = self.scopes[-1]
        text = self.markdown(comment)
        if heading and scope.kind != "namespace":
            self.end_group()
            self.out += ["/// @name " + escaped(heading.group(1)), "/// @{"]
            scope.grouped = True
            text = self.markdown(comment[1:])
        elif heading:
            text = self.markdown([heading.group(1).rstrip(".") + ".", *comment[1:]])
        if first == 0:
            self.out += ["/// @file", *self.document("", text)]
        elif not following or heading:
            scope.section = text
            scope.headed = bool(heading)
            self.above = []
        else:
            self.above = text
            self.named = ""

    def end_group(self):
        if self.scopes[-1].grouped:
            self.out.append("/// @}")
            self.scopes[-1].grouped = False

    def take_line(self, line):
        code, behind = split_comment(line)
        plain = without_literals(code).strip()
        if not plain:
            self.above = []
            self.out.append("")
            return
        scope = self.scopes[-1]
        if scope.grouped and not self.declaration and re.match(r"}|(public|protected|private):", plain):
            self.end_group()
        indent = line[:len(line) - len(line.lstrip())]
        begins = not self.declaration and scope.kind != "body" and not NOT_DECLARED.match(plain)
        if begins and plain.startswith("#") and not self.above:
            pass  # a macro that speaks for itself
        elif begins and behind:
            self.out += self.document(indent, self.markdown([behind]))
        elif begins:
            self.out += self.document(indent, self.cover(plain))
        self.out.append(code)
        self.follow(plain, scope)

    def follow(self, plain, scope):
        """Keeps the scopes and whether a declaration is at its end."""
        if plain.startswith("#") or re.match(r"^(public|protected|private):$", plain):
            if not plain.startswith("#"):
                self.above = []
                scope.section = []
            return
        for char in plain:
            if self.scopes[-1].kind != "body":
                self.declaration += char
            if char in "([":
                self.parentheses += 1
            elif char in ")]":
                self.parentheses -= 1
            elif char == "{":
                self.open()
            elif char == "}":
                self.close()
            elif char == ";" and not self.parentheses and self.scopes[-1].kind != "body":
                self.declaration = ""
        if self.scopes[-1].kind == "enum" and plain.endswith(","):
            self.declaration = ""
        elif self.declaration and self.scopes[-1].kind != "body":
            self.declaration += " "

    def open(self):
        head = re.sub(r"^\s*(template\s*<.*?>\s*)+(?=class|struct|union|enum)", "", MACRO.sub("", self.declaration)).strip()
        match = SCOPE.match(head)
        if match and not self.parentheses and "(" not in head and self.scopes[-1].kind != "body":
            kind = "enum" if match.group(1).startswith("enum") else match.group(1)
            self.scopes.append(Scope(kind, match.group(2)))
            self.scopes[-1].above = self.above
            self.declaration = ""
            self.above = []
        else:
            self.scopes.append(Scope("body"))

    def close(self):
        closed = self.scopes.pop()
        if closed.kind == "body":
            # A function ends with its body; an initialiser goes on to its semicolon.
            head = self.declaration.rstrip("{ ")
            if self.scopes[-1].kind != "body" and "(" in head and not head.endswith("="):
                self.declaration = ""
        else:
            self.declaration = "" if closed.kind == "namespace" else "}"
            self.above = closed.above
            if closed.name.startswith("std::"):
                self.end = "/// @endcond"


with open(sys.argv[1], encoding="utf-8") as header:
    print("\n".join(Filter(header.read().split("\n")).run()))
