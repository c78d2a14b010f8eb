"""Which changes the mutation run makes in C++ text, and which parts it does not change."""

import pytest

from vantro_mutation.operators import are_independent, mutants


def changed(statement, operator=None):
    """The possible changes of a statement in a function, each as the new text of the statement."""
    before, after = "void F() {\n", "\n}\n"
    text = before + statement + after
    return [mutant.apply(text)[len(before):-len(after)] for mutant in mutants("player/a.cpp", text)
            if operator is None or mutant.operator == operator]


@pytest.mark.parametrize("statement, operator, expected", [
    ("x = 5;", "constant", ["x = 6;"]),
    ("x = 0x10u;", "constant", ["x = 0x11u;"]),
    ("x = 1.5f;", "constant", ["x = 2.5f;"]),
    ("Show(SW_SHOW);", "constant", ["Show((SW_SHOW + 1));"]),
    ("Move(SWP_NOSIZE | SWP_NOMOVE);", "constant", []),
    ("char text[32];", "constant", ["char text[16];"]),
    ("f = 'a';", "constant", ["f = 'b';"]),
    ("x = a < b;", "comparison", ["x = a <= b;", "x = a >= b;"]),
    ("x = a == b;", "comparison", ["x = a != b;"]),
    ("x = a && b;", "condition", ["x = a || b;"]),
    ("x = !a;", "condition", ["x = a;"]),
    ("x = a ? b : c;", "condition", ["x = a ? c : b;"]),
    ("x = true;", "truth", ["x = false;"]),
    ("x = a + b;", "sign", ["x = a - b;"]),
    ("x = -1;", "sign", ["x = 1;"]),
    ("++x;", "sign", ["--x;"]),
    ("f = kA | kB | kC;", "flag", ["f =  kB | kC;", "f = kA  | kC;", "f = kA | kB ;"]),
    ('F("text");', "text", ['F("~text");']),
    ('F(L"");', "text", ['F(L"~");']),
    ("F(a, b, c);", "arguments", ["F(b, a, c);", "F(a, c, b);"]),
    ('LOG_INFO("%d %d", a, b);', "arguments", ['LOG_INFO("%d %d", b, a);']),
    ("std::swap(a, b);", "arguments", []),
    ("F(a);\nG();", "order", ["G();\nF(a);"]),
    ("F(a);", "removed statement", [";"]),
    ("a = b;", "removed statement", [";"]),
    ("if (a) return;", "removed guard", [";"]),
    ("if (a) {\n  F();\n  return 1;\n}", "removed guard", [";"]),
    ("if (a) F();", "condition", ["if (!(a)) F();"]),
    ("if (const int x = f(); x) F();", "condition", ["if (const int x = f(); !(x)) F();"]),
    ("for (;;) F();", "removed statement", ["for (;;) ;"]),
    ("auto f = [] { G(); };", "removed statement", ["auto f = [] { ; };"]),
])
def test_change(statement, operator, expected):
    assert changed(statement, operator) == expected


@pytest.mark.parametrize("statement", [
    "// x = 5 < 6;",
    "/* F(1, 2); */",
    "#include \"player/a1.h\"",
    "#define LIMIT 5",
    "#define LONG(a) \\\n  F(a, 5)",
    "static_assert(sizeof(x) == 8, \"text\");",
    "using Pair = std::array<int, 2>;",
    "std::vector<int> list;",
    "int* pointer;",
    "[[maybe_unused]] int unused;",
])
def test_what_the_compiler_alone_reads_is_left_alone(statement):
    assert changed(statement) == []


@pytest.mark.parametrize("text", [
    'extern "C" {\nint a;\n}\n',
    "struct A {\n  A(int first, int second);\n  virtual void F() = 0;\n  A& operator=(const A&) = delete;\n};\n",
    "template <int N = 5>\nvoid F();\n",
    "void F(int first, int second);\n",
])
def test_declarations_are_left_alone(text):
    assert mutants("player/a.h", text) == []


@pytest.mark.parametrize("statement", ["int a = 1;", "const auto b = F();", "Foo* c = G();", "return;", "Foo d(e);"])
def test_a_declaration_or_jump_is_neither_removed_nor_moved(statement):
    found = changed(f"{statement}\nF();", "order") + changed(statement, "removed statement")
    assert found == []


def test_a_guard_with_an_else_is_no_guard():
    assert changed("if (a) return 1;\nelse F();", "removed guard") == []


def test_a_change_knows_its_lines():
    (constant,) = [found for found in mutants("player/a.cpp", "void F() {\n  G(\n    1);\n}\n") if found.operator == "constant"]
    assert (constant.line, constant.first, constant.last) == (3, 2, 3)
    assert str(constant) == "player/a.cpp:3: constant: 1); -> 2);"


@pytest.mark.parametrize("first, second, expected", [
    ("wc.hCursor = LoadCursor(nullptr, IDC_ARROW);", "wc.hbrBackground = brush_;", True),
    ("strip.top = 0;", "strip.bottom = 30;", True),
    ("a = 1;", "b = 2;", True),
    ("a = 1;", "b = a;", False),
    ("b = a;", "a = 1;", False),
    ("a = 1;", "a = 2;", False),
    ("wc.a = First();", "wc.b = Second();", False),
    ("activeIndex_ = 0;", "next = Index();", False),
    ("state_.a = 0;", "state_.b = Read();", False),
    ("rect.a = 0;", "rect.b = Measure(rect);", False),
    ("a += 1;", "b = 2;", False),
    ("request.a = ReadIntArgument(call, \"a\", request.a);", "request.b = ReadEither(call, \"b\", \"B\");", True),
    ("state.a = state.b + 1;", "state.b = 1;", False),
    ("copy = state;", "state.a = 1;", False),
    ("size_.width_ = place.Width();", "size_.height_ = place.Height();", True),
    ("a = place_.Width();", "b = place_.Height();", False),
    ("a = place.Width(b);", "b = 2;", False),
    ("Call();", "b = 2;", False),
    ('LOG_INFO("%p (closing)", static_cast<void*>(&window));', "closing = true;", True),
    ("closing = true;", 'LOG_INFO("text %s", name.c_str());', True),
    ('LOG_INFO("%d", closing);', "closing = true;", False),
    ('LOG_INFO("%d", IsClosing());', "closing = true;", False),
    ('LOG_INFO("text");', "closing = IsClosing();", False),
])
def test_assignments_are_independent_when_neither_uses_the_other(first, second, expected):
    assert are_independent(first, second) is expected


def test_independent_assignments_are_not_exchanged():
    text = "void F() {\n  strip.top = 0;\n  strip.bottom = 30;\n  Draw(strip);\n}\n"
    assert [found.after for found in mutants("a.cpp", text) if found.operator == "order"] == \
        ["Draw(strip); strip.bottom = 30;"]
