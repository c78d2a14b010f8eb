"""Finds the possible changes of a source file. Each changes one place."""

import dataclasses
import re

from .source import CLOSING, Source

COMPARISONS = {"==": ("!=",), "!=": ("==",), "<": ("<=", ">="), "<=": ("<", ">"), ">": (">=", "<="), ">=": (">", "<")}
ARITHMETIC = {"+": "-", "-": "+"}
ASSIGNMENTS = {"+=": "-=", "-=": "+=", "++": "--", "--": "++"}
INTEGER = re.compile(r"(0[xX][0-9a-fA-F']+|\d[\d']*)([uUlLzZ]*)$")
FLOAT = re.compile(r"(\d+\.\d*)([fFlL]?)$")
# A constant of the system's headers, such as SW_SHOWNORMAL. Names of types look the same except for their endings.
SYSTEM_CONSTANT = re.compile(r"(?!LOG_|VANTRO_|VLC_API)[A-Z][A-Z0-9]*_[A-Z0-9_]+$")
SYSTEM_TYPE = re.compile(r".*(_PTR|_T|_STATE|_POINTERS|_INFO|_INFORMATION|_RECORD|_FILTER|_BLOB|_HANDLE)$")


# A plain assignment to a variable or to a member of an object.
ASSIGNMENT = re.compile(r"(?P<target>(?:(?P<object>\w+)\.)?\w+)\s*=(?!=)(?P<value>[^=;]*);", re.DOTALL)


@dataclasses.dataclass(frozen=True)
class Mutant:
    """Replaces text[begin:end] of a file. first and last are the lines, counted from 1, of the statement around it."""

    file: str
    operator: str
    begin: int
    end: int
    replacement: str
    first: int
    last: int
    line: int
    before: str
    after: str

    def apply(self, text):
        return text[:self.begin] + self.replacement + text[self.end:]

    def __str__(self):
        return f"{self.file}:{self.line}: {self.operator}: {self.before} -> {self.after}"


def collapse(text):
    return " ".join(text.split())


# What changes nothing although it looks like a call: a cast, a read of a request's argument, or a call of a local
# object's member without arguments.
PLAIN_READ = re.compile(r"static_cast<[^>]*>\(|\bRead(?:Either|\w+Argument)\(call,|"
                        r"(?<![\w.>])[a-zA-Z]\w*(?<!_)\.\w+\(\)|\.(?:c_str|get|size)\(\)")


def logs_apart_from(log, assignment):
    """Whether a log statement makes no call and does not use what the assignment changes or computes."""
    arguments = PLAIN_READ.sub(" ", log.rsplit('"', 1)[-1])
    return "(" not in arguments and "(" not in PLAIN_READ.sub("", assignment["value"]) and \
        not re.search(rf"\b{re.escape(assignment['target'].split('.')[0])}\b", arguments)


# Words before a bracket that is no call, and functions that treat both arguments alike.
NOT_SWAPPED = ("if", "for", "while", "switch", "return", "catch", "sizeof", "decltype", "void", "min", "max", "swap")


def are_independent(first, second):
    """Whether the order of two statements has no effect: assignments to different variables without a call, or to
    different members of one local object with a call in one of them, or a log statement and an assignment that it does
    not use."""
    one, other = ASSIGNMENT.match(first), ASSIGNMENT.match(second)
    if one and second.startswith("LOG_"):
        return logs_apart_from(second, one)
    if other and first.startswith("LOG_"):
        return logs_apart_from(first, other)
    if not one or not other or one["target"] == other["target"]:
        return False
    calls = sum("(" in PLAIN_READ.sub("", each["value"]) for each in (one, other))
    used = [re.search(rf"\b{re.escape(by['target'])}\b|\b{re.escape(by['target'].split('.')[0])}\b(?!\.)", of["value"])
            for by, of in ((one, other), (other, one))]
    same_object = one["object"] is not None and one["object"] == other["object"] and not one["object"].endswith("_")
    return not any(used) and (calls == 0 or calls == 1 and same_object)


class _Finder:
    def __init__(self, file, text):
        self.file = file
        self.source = Source(text)
        self.text = text
        self.found = {}

    def add(self, operator, first, last, replacement):
        """Replaces tokens first to last, both included."""
        source = self.source
        if any(index in source.untouchable for index in range(first, last + 1)):
            return
        begin, end = source.tokens[first].begin, source.tokens[last].end
        from_line, to_line = source.line(begin), source.line(end - 1)
        lines_begin = self.text.rfind("\n", 0, begin) + 1
        lines_end = self.text.find("\n", end)
        lines_end = len(self.text) if lines_end < 0 else lines_end
        before = collapse(self.text[lines_begin:lines_end])
        after = collapse(self.text[lines_begin:begin] + replacement + self.text[end:lines_end])
        if before == after:
            return
        statement_begin = first
        while statement_begin > 0 and source.token(statement_begin - 1) not in (";", "{", "}"):
            statement_begin -= 1
        self.found.setdefault((begin, end, replacement), Mutant(
            self.file, operator, begin, end, replacement,
            source.line(source.tokens[statement_begin].begin), to_line, from_line, before, after))

    def text_of(self, first, last):
        return self.text[self.source.tokens[first].begin:self.source.tokens[last].end]

    # Single tokens.

    def literals(self):
        source = self.source
        for index, token in enumerate(source.tokens):
            if token.kind == "number":
                for changed in self.changed_numbers(index, token.text):
                    self.add("constant", index, index, changed)
            elif token.kind == "string":
                quote = token.text.index('"') + 1
                self.add("text", index, index, token.text[:quote] + "~" + token.text[quote:])
            elif token.kind == "raw":
                quote = token.text.index("(") + 1
                self.add("text", index, index, token.text[:quote] + "~" + token.text[quote:])
            elif token.kind == "char" and re.fullmatch(r"'[0-9A-Ya-y%/.,:;=]'", token.text):
                self.add("constant", index, index, f"'{chr(ord(token.text[1]) + 1)}'")
            elif token.text in ("true", "false"):
                self.add("truth", index, index, "false" if token.text == "true" else "true")
            elif token.kind == "name" and "|" in (source.token(index - 1), source.token(index + 1)):
                continue  # a flag is left out instead, because another flag may contain the bit that 1 adds
            elif token.kind == "name" and SYSTEM_CONSTANT.match(token.text) and not SYSTEM_TYPE.match(token.text):
                if source.kind(index + 1) != "name" and source.token(index + 1) not in ("*", "(", "{", "::", "&") or \
                        source.token(index + 1) == "&" and source.spaced(index + 1):
                    self.add("constant", index, index, f"({token.text} + 1)")

    def changed_numbers(self, index, text):
        source = self.source
        if match := INTEGER.match(text):
            value = int(match[1].replace("'", ""), 0 if match[1][:2] in ("0x", "0X") else 10)
            # A buffer with one more element behaves the same, so a size is halved.
            is_size = source.token(index - 1) == "[" and source.token(index + 1) == "]" and \
                source.kind(index - 2) == "name" and (source.kind(index - 3) == "name" or source.token(index - 3) in (">", "*"))
            changed = value // 2 if is_size else value + 1
            yield (hex(changed) if match[1][:2] in ("0x", "0X") else str(changed)) + match[2]
        elif match := FLOAT.match(text):
            yield f"{float(match[1]) + 1}{match[2]}"

    def operators(self):
        source = self.source
        for index, token in enumerate(source.tokens):
            if token.kind != "op":
                continue
            text = token.text
            if text in COMPARISONS and source.spaced(index):
                for changed in COMPARISONS[text]:
                    self.add("comparison", index, index, changed)
            elif text in ("&&", "||") and source.spaced(index):
                self.add("condition", index, index, "||" if text == "&&" else "&&")
            elif text in ARITHMETIC and source.spaced(index):
                self.add("sign", index, index, ARITHMETIC[text])
            elif text == "-" and source.kind(index + 1) in ("number", "name") and source.token(index - 1) in (
                    "(", ",", "=", "return", "{", "?", ":", "==", "!=", "<", ">"):
                self.add("sign", index, index, "")
            elif text in ASSIGNMENTS:
                self.add("sign", index, index, ASSIGNMENTS[text])
            elif text == "!" and source.token(index + 1) != "=":
                self.add("condition", index, index, "")
            elif text == "?":
                self.swap_branches(index)

    def swap_branches(self, question):
        source = self.source
        colon = self.end_of_operand(question + 1, (":",))
        end = self.end_of_operand(colon + 1, (";", ",", ")", "]", "}", ":"))
        if source.token(colon) == ":" and question + 1 < colon < end - 1:
            yes, no = self.text_of(question + 1, colon - 1), self.text_of(colon + 1, end - 1)
            if yes != no:
                self.add("condition", question + 1, end - 1, f"{no} : {yes}")

    def end_of_operand(self, index, ends):
        source = self.source
        while index < len(source.tokens) and source.token(index) not in ends + (";", ")", "]", "}"):
            if source.token(index) in CLOSING and index in source.partner:
                index = source.partner[index]
            index += 1
        return index

    # Lists of operands and of arguments.

    def flags(self):
        """Removes each operand of `A | B | C` in turn."""
        source = self.source
        for index, token in enumerate(source.tokens):
            if token.text == "|" and source.spaced(index) and not self.within_flags_before(index):
                bars = [index]
                while True:
                    after = bars[-1] + 1
                    while self.is_operand(after):
                        after = source.partner.get(after, after) + 1
                    if source.token(after) != "|":
                        break
                    bars.append(after)
                first = index - 1
                while self.is_operand(first - 1):
                    first -= 1
                self.add("flag", first, bars[0], "")
                for bar, following in zip(bars, bars[1:] + [after]):
                    self.add("flag", bar, following - 1, "")

    def is_operand(self, index):
        return self.source.kind(index) in ("name", "number") and self.source.token(index) != "return" or \
            self.source.token(index) == "::"

    def within_flags_before(self, index):
        index -= 1
        while self.is_operand(index):
            index -= 1
        return self.source.token(index) == "|"

    def arguments(self):
        """Swaps neighbouring arguments of a call."""
        source = self.source
        for index, token in enumerate(source.tokens):
            name = source.token(index - 1)
            callee = (source.kind(index - 1) == "name" and name not in NOT_SWAPPED) or name == ">"
            if token.text != "(" or not callee or index not in source.partner or not self.in_code(index):
                continue
            parts = self.split_arguments(index)
            begin = 1 if source.token(index - 1).startswith("LOG_") else 0  # a format string is not swapped
            for one, other in zip(parts[begin:], parts[begin + 1:]):
                first, second = self.text_of(*one), self.text_of(*other)
                if first != second:
                    between = self.text[source.tokens[one[1]].end:source.tokens[other[0]].begin]
                    self.add("arguments", one[0], other[1], second + between + first)

    def split_arguments(self, bracket):
        source, end = self.source, self.source.partner[bracket]
        parts, begin, index = [], bracket + 1, bracket + 1
        while index < end:
            if source.token(index) in CLOSING and index in source.partner:
                index = source.partner[index]
            elif source.token(index) == ",":
                parts.append((begin, index - 1))
                begin = index + 1
            index += 1
        if begin < end:
            parts.append((begin, end - 1))
        return [part for part in parts if part[0] <= part[1]]

    def in_code(self, index):
        return any(brace < index < self.source.partner[brace] for brace in self.source.code_braces)

    # Statements.

    def statements(self):
        source = self.source
        for statements in source.statement_lists:
            for statement in statements:
                if source.is_expression(statement) and source.token(statement.last) == ";":
                    self.add("removed statement", statement.first, statement.last, ";")
                if statement.kind == "if":
                    self.change_if(statement)
            for one, other in zip(statements, statements[1:]):
                if source.is_expression(one) and source.is_expression(other):
                    first, second = self.text_of(one.first, one.last), self.text_of(other.first, other.last)
                    if first != second and not are_independent(first, second):
                        between = self.text[source.tokens[one.last].end:source.tokens[other.first].begin]
                        self.add("order", one.first, other.last, second + between + first)

    def change_if(self, statement):
        source = self.source
        begin = statement.body - 1
        begin = source.partner.get(begin, begin)
        first, last = begin + 1, statement.body - 2
        for index in range(first, last + 1):
            if source.token(index) == ";":
                first = index + 1
        condition = range(first, last + 1)
        is_plain = not any(source.token(index) in ("&&", "||") for index in condition)
        if not (source.token(first) == "!" and is_plain):
            # The change of the operator already negates a single comparison.
            if not (is_plain and any(source.token(index) in ("==", "!=") for index in condition)):
                self.add("condition", first, last, f"!({self.text_of(first, last)})")
        if not statement.has_else and self.ends_with_return(statement):
            self.add("removed guard", statement.first, statement.last, ";")

    def ends_with_return(self, statement):
        source = self.source
        if source.token(statement.body) == "return":
            return True
        if source.token(statement.body) != "{":
            return False
        end = source.partner[statement.body]
        index = end - 2
        while index > statement.body and source.token(index) not in (";", "{", "}"):
            index -= 1
        return source.token(index + 1) == "return"


def mutants(file, text):
    """All possible changes of a file, ordered by position."""
    finder = _Finder(file, text)
    for find in (finder.literals, finder.operators, finder.flags, finder.arguments, finder.statements):
        find()
    return [finder.found[key] for key in sorted(finder.found)]
