"""Splits C++ text into tokens, pairs brackets and finds statements. Covers only the grammar that the changes need."""

import bisect
import dataclasses
import re

TOKEN = re.compile(r"""
    (?P<space>\s+)
  | (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<preprocessor>(?<![^\n])[ \t]*\#(?:\\\n|[^\n])*)
  | (?P<raw>(?:u8|[LuU])?R"(?P<fence>[^(\s]*)\(.*?\)(?P=fence)")
  | (?P<string>(?:u8|[LuU])?"(?:\\.|[^"\\\n])*")
  | (?P<char>(?:u8|[LuU])?'(?:\\.|[^'\\\n])+')
  | (?P<number>\.?\d(?:[eEpP][+-]|'(?=[0-9a-fA-F])|[\w.])*)
  | (?P<name>[A-Za-z_]\w*)
  | (?P<op><=>|<<=|>>=|\.\.\.|->\*|::|->|\+\+|--|<<|<=|>=|==|!=|&&|\|\||[-+*/%&|^]=|.)
""", re.VERBOSE | re.DOTALL)

CLOSING = {"(": ")", "[": "]", "{": "}"}
SCOPES = {"class", "struct", "union", "namespace", "extern"}
NOT_EXPRESSIONS = {
    "return", "break", "continue", "goto", "throw", "using", "typedef", "static", "const", "constexpr", "auto", "static_assert",
    "class", "struct", "union", "enum", "namespace", "template", "friend", "public", "private", "protected", "extern",
    "if", "for", "while", "do", "switch", "case", "default", "try", "else", "inline", "thread_local", "delete", "co_return",
    "bool", "int", "char", "unsigned", "long", "double", "float", "void", "short", "volatile", "wchar_t", "explicit", "virtual"}


@dataclasses.dataclass(frozen=True)
class Token:
    kind: str
    text: str
    begin: int
    end: int


@dataclasses.dataclass(frozen=True)
class Statement:
    """Tokens first to last, both included. kind is "if", "simple" or "other". For an "if", body is the index after the
    bracket of the condition, and has_else says whether an else follows."""

    kind: str
    first: int
    last: int
    body: int = -1
    has_else: bool = False


def tokenize(text):
    tokens = []
    position = 0
    while position < len(text):
        match = TOKEN.match(text, position)
        kind = match.lastgroup if match.lastgroup != "fence" else "raw"
        tokens.append(Token(kind, match[0], position, match.end()))
        position = match.end()
    return tokens


class Source:
    def __init__(self, text):
        self.text = text
        self.tokens = [token for token in tokenize(text) if token.kind not in ("space", "comment", "preprocessor")]
        self._line_begins = [0] + [match.end() for match in re.finditer("\n", text)]
        self.partner = self._pair()
        self.code_braces = self._find_code_braces()
        self.statement_lists = []
        for brace in sorted(self.code_braces):
            self._read_list(brace + 1, self.partner[brace])
        self.untouchable = self._find_untouchable()

    def line(self, position):
        return bisect.bisect_right(self._line_begins, position)

    def token(self, index):
        return self.tokens[index].text if 0 <= index < len(self.tokens) else ""

    def kind(self, index):
        return self.tokens[index].kind if 0 <= index < len(self.tokens) else ""

    def spaced(self, index):
        """Whether white space is on both sides. The formatter puts it around binary operators, but not around other
        tokens with the same text."""
        token = self.tokens[index]
        return self.text[token.begin - 1].isspace() and self.text[token.end:token.end + 1].isspace()

    def is_expression(self, statement):
        """Whether this is a simple statement that is neither a declaration nor a jump."""
        first, last = statement.first, statement.last
        if statement.kind != "simple" or first == last or self.token(first) in NOT_EXPRESSIONS:
            return False
        index = first
        while index < last and self.token(index) != "=":
            if self.kind(index) == "name" or self.token(index) in (">", "*", "&", "&&"):
                if self.kind(index + 1) == "name" and not (self.kind(index) == "op" and (index == first or self.spaced(index))):
                    return False
            if index in self.partner and self.token(index) in CLOSING:
                index = self.partner[index]
            index += 1
        return True

    def _pair(self):
        partner, open_brackets = {}, []
        for index, token in enumerate(self.tokens):
            if token.kind != "op":
                continue
            if token.text in CLOSING:
                open_brackets.append(index)
            elif open_brackets and token.text == CLOSING[self.tokens[open_brackets[-1]].text]:
                other = open_brackets.pop()
                partner[other], partner[index] = index, other
        return partner

    def _head(self, brace):
        """The tokens between the last statement's end and the brace."""
        begin = brace
        while begin > 0 and self.token(begin - 1) not in (";", "{", "}"):
            begin = self.partner[begin - 1] if self.token(begin - 1) in (")", "]") and begin - 1 in self.partner else begin - 1
        return [self.token(index) for index in range(begin, brace)]

    def _find_code_braces(self):
        code, inside = set(), []
        for index, token in enumerate(self.tokens):
            while inside and self.partner[inside[-1]] <= index:
                inside.pop()
            if token.kind != "op" or token.text != "{" or index not in self.partner:
                continue
            before, head = self.token(index - 1), self._head(index)
            parent_is_code = bool(inside) and inside[-1] in code
            words = set(head) - {"template"}
            if "enum" in words or (words & SCOPES and "(" not in head):
                is_code = False
            elif before in (")", "else", "do", "try", "const", "noexcept", "override", "final", "mutable", "]"):
                is_code = True
            elif before in (";", "{", "}"):
                is_code = parent_is_code or (before == "}" and ":" in self._constructor_head(index))
            elif before == ":":
                is_code = parent_is_code
            else:
                is_code = "->" in self._tail(index)
            if is_code:
                code.add(index)
            inside.append(index)
        return code

    def _constructor_head(self, brace):
        """The head of a brace that follows a member initializer in braces."""
        index = brace
        while index > 0 and self.token(index - 1) == "}" and index - 1 in self.partner:
            index = self.partner[index - 1]
            while index > 0 and self.token(index - 1) not in (";", "{", "}"):
                index = self.partner.get(index - 1, index - 1) if self.token(index - 1) in (")", "]") else index - 1
        return [self.token(i) for i in range(index, brace)]

    def _tail(self, brace):
        """The tokens between the last round bracket and the brace: a trailing return type, if there is one."""
        begin = brace
        while begin > 0 and self.token(begin - 1) not in (";", "{", "}", ")", "(", ","):
            begin -= 1
        return [self.token(index) for index in range(begin, brace)]

    def _read_list(self, index, end):
        statements = []
        while index < end:
            statement = self._read(index, end)
            statements.append(statement)
            index = statement.last + 1
        self.statement_lists.append(statements)

    def _after_brackets(self, index):
        while self.token(index) not in ("(", ""):
            index += 1
        return self.partner.get(index, index) + 1

    def _read(self, index, end):
        word = self.token(index)
        if word == "{":
            return Statement("other", index, self.partner[index])
        if word in ("if", "for", "while", "switch"):
            body = self._after_brackets(index)
            inner = self._read_single(body, end)
            last = inner.last
            has_else = word == "if" and self.token(last + 1) == "else"
            if has_else:
                last = self._read_single(last + 2, end).last
            return Statement("if" if word == "if" else "other", index, last, body, has_else)
        if word == "do":
            last = self._read_single(index + 1, end).last
            return Statement("other", index, min(self._to_semicolon(last + 1, end), end - 1))
        if word == "try":
            last = self.partner[index + 1]
            while self.token(last + 1) == "catch":
                last = self.partner[self._after_brackets(last + 1)]
            return Statement("other", index, last)
        if word in ("case", "default"):
            while index < end - 1 and self.token(index) != ":":
                index += 1
            return Statement("other", index, index)
        return Statement("simple", index, self._to_semicolon(index, end))

    def _read_single(self, index, end):
        """The statement under an if, else, for or while. Without braces it is a list with one statement."""
        statement = self._read(index, end)
        if self.token(index) != "{":
            self.statement_lists.append([statement])
        return statement

    def _to_semicolon(self, index, end):
        while index < end - 1 and self.token(index) != ";":
            if self.token(index) in CLOSING and index in self.partner:
                index = self.partner[index]
            index += 1
        return min(index, end - 1)

    def _find_untouchable(self):
        """Tokens that no change may touch: those that only matter at compile time or have no value at run time."""
        marked = set()
        for index, token in enumerate(self.tokens):
            text = token.text
            if text in ("static_assert", "alignas", "decltype", "sizeof", "noexcept") and self.token(index + 1) == "(":
                marked.update(range(index, self.partner[index + 1] + 1))
            elif text == "[" and self.token(index + 1) == "[":
                marked.update(range(index, self.partner[index] + 1))
            elif text == "extern" and self.kind(index + 1) == "string":
                marked.add(index + 1)
            elif text == "operator":
                marked.update((index + 1, index + 2))
            elif text in ("using", "typedef", "friend"):
                marked.update(range(index, self._to_semicolon(index, len(self.tokens)) + 1))
            elif text == "template" and self.token(index + 1) == "<":
                depth, at = 0, index + 1
                while at < len(self.tokens):
                    depth += {"<": 1, ">": -1}.get(self.token(at), 0)
                    marked.add(at)
                    if depth == 0:
                        break
                    at += 1
            elif text == "=" and self.token(index + 1) in ("0", "delete", "default") and self.token(index + 2) == ";" and \
                    self.token(index - 1) in (")", "const", "noexcept", "override"):
                marked.add(index + 1)
        return marked
