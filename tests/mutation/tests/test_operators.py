"""Each operator makes of sample lines what it says, and nothing of others."""

import unittest

import operators


def changed(text: str, operator: str) -> list[str]:
    """The texts that an operator makes of a function with the given body."""
    source = "void f()\n{\n" + text + "\n}\n"
    made = [operators.apply(source, change) for change in operators.changes_of(source) if change.operator == operator]
    return [each.removeprefix("void f()\n{\n").removesuffix("\n}\n") for each in made]


def changed_file(text: str, operator: str) -> list[str]:
    return [operators.apply(text, change) for change in operators.changes_of(text) if change.operator == operator]


class NegatedConditions(unittest.TestCase):
    def of(self, text: str) -> list[str]:
        return changed(text, "negate-condition")

    def test_of_statements(self):
        self.assertEqual(self.of("if (a) {"  " b(); }"), ["if (!(a)) { b(); }"])
        self.assertEqual(self.of("while (a.b()) {}"), ["while (!(a.b())) {}"])
        self.assertEqual(self.of("do {} while (a());"), ["do {} while (!(a()));"])
        self.assertEqual(self.of("for (int i = 0; i < n; ++i) {}"), ["for (int i = 0; !(i < n); ++i) {}"])

    def test_behind_an_initialisation(self):
        self.assertEqual(self.of("if (auto a = f(); a.b()) {}"), ["if (auto a = f(); !(a.b())) {}"])

    def test_over_lines(self):
        self.assertEqual(self.of("if (a &&\n    b) {}"), ["if (!(a &&\n    b)) {}"])

    def test_of_choices(self):
        self.assertEqual(self.of("x = a.b(c) ? 1 : 2;"), ["x = !(a.b(c)) ? 1 : 2;"])
        self.assertEqual(self.of("return f(x, a < 3 ? 1 : 2);"), ["return f(x, !(a < 3) ? 1 : 2);"])

    def test_not_where_another_operator_does_the_same(self):
        self.assertEqual(self.of("if (!a) {}"), [])
        self.assertEqual(self.of("if (a == b) {}"), [])
        self.assertEqual(self.of("while (true) {}"), [])

    def test_not_of_declarations_ranges_and_what_the_compiler_decides(self):
        self.assertEqual(self.of("if (auto const* p = f()) {}"), [])
        self.assertEqual(self.of("for (auto x : list) {}"), [])
        self.assertEqual(self.of("if constexpr (a<T>()) {}"), [])


class SwappedRelations(unittest.TestCase):
    def of(self, text: str) -> list[str]:
        return changed(text, "swap-relation")

    def test_all_six(self):
        for one, other in [("<", "<="), (">", ">="), ("==", "!=")]:
            self.assertEqual(self.of(f"return a {one} b;"), [f"return a {other} b;"])
            self.assertEqual(self.of(f"return a {other} b;"), [f"return a {one} b;"])

    def test_each_of_several(self):
        self.assertEqual(self.of("return a < b && c >= d;"), ["return a <= b && c >= d;", "return a < b && c > d;"])

    def test_not_in_templates_shifts_and_literals(self):
        self.assertEqual(self.of("std::vector<int> a;"), [])
        self.assertEqual(self.of("out << 1;"), [])
        self.assertEqual(self.of('f("a < b", \'<\'); // a < b\n/* a < b */'), [])
        self.assertEqual(changed_file("template <class T>\nbool operator<(T a, T b);\n", "swap-relation"), [])

    def test_not_in_what_only_the_compiler_sees(self):
        self.assertEqual(changed_file("#if A < 3\n#endif\nstatic_assert(a < b);\n", "swap-relation"), [])
        self.assertEqual(self.of("static_assert(a < b);"), [])
        self.assertEqual(self.of("if constexpr (a < b) {}"), [])


class SwappedLogic(unittest.TestCase):
    def of(self, text: str) -> list[str]:
        return changed(text, "swap-logic")

    def test_both(self):
        self.assertEqual(self.of("return a && b;"), ["return a || b;"])
        self.assertEqual(self.of("return a || b;"), ["return a && b;"])
        self.assertEqual(self.of("return a &&\n       b;"), ["return a ||\n       b;"])

    def test_not_of_references(self):
        self.assertEqual(self.of("auto&& a = f(); g([](T&& t) { h(t); });"), [])


class OffByOne(unittest.TestCase):
    def of(self, text: str) -> list[str]:
        return changed(text, "off-by-one")

    def test_numbers(self):
        self.assertEqual(self.of("f(3U);"), ["f(2U);", "f(4U);"])
        self.assertEqual(self.of("f(0);"), ["f(1);"])
        self.assertEqual(self.of("f(0x10);"), ["f(0x11);", "f(0xf);"])

    def test_sums(self):
        self.assertIn("f(n - 1);", self.of("f(n + 1);"))
        self.assertIn("f(n + m);", self.of("f(n - m);"))
        self.assertEqual(self.of("f(text + more);"), [])

    def test_constants(self):
        made = changed_file("constexpr int a = 5;\n", "off-by-one")
        self.assertEqual(made, ["constexpr int a = 4;\n", "constexpr int a = 6;\n"])
        self.assertEqual(len(changed_file("class A {\n    static constexpr int a{5};\n};\n", "off-by-one")), 2)

    def test_not_initial_values_of_members_cases_reals_and_pure_functions(self):
        self.assertEqual(changed_file("struct A {\n    int a = 5;\n    int b{5};\n};\n", "off-by-one"), [])
        self.assertEqual(changed_file("struct A {\n    virtual void f() = 0;\n};\n", "off-by-one"), [])
        self.assertEqual(changed_file("void f(int a = 5);\n", "off-by-one"), [])
        self.assertEqual(self.of("switch (a) { case 5: g(); }"), [])
        self.assertEqual(self.of("f(1.5, 1e9, 007);"), [])
        self.assertEqual(self.of("std::array<int, 5> a;"), [])


class DroppedStatements(unittest.TestCase):
    def test_calls(self):
        calls = ["f(a);", "a.b(c);", "a->b(c)->d();", "std::sort(a, b);", "f<int>(a);", "(*a)(b);", "out << a << b;"]
        for text in calls:
            self.assertEqual(changed(text, "drop-call"), [";"], text)

    def test_calls_in_bodies_without_braces_and_in_functions_without_names(self):
        self.assertEqual(changed("if (a) f();", "drop-call"), ["if (a) ;"])
        self.assertIn("g([&] { ; });", changed("g([&] { f(); });", "drop-call"))

    def test_lines_stay(self):
        self.assertEqual(changed("f(a,\n  b);\ng = 1;", "drop-call"), ["\n;\ng = 1;"])

    def test_assignments(self):
        for text in ["a = b;", "a.b += c;", "*a = b;", "a[b] = c;", "++a;", "a++;", "this->a = b;"]:
            self.assertEqual(changed(text, "drop-assignment"), [";"], text)

    def test_not_declarations(self):
        declared = ["A a(b);", "A a = b;", "auto a = f();", "std::vector<int> a(3);", "A const& a = f();", "A a{f()};"]
        for text in declared:
            self.assertEqual(changed(text, "drop-call") + changed(text, "drop-assignment"), [], text)

    def test_not_what_only_silences_a_warning(self):
        self.assertEqual(changed("static_cast<void>(a);", "drop-call"), [])

    def test_not_declarations_of_functions(self):
        self.assertEqual(changed_file("void f(int a);\nstruct A {\n    A(int);\n    void g();\n};\n", "drop-call"), [])


class DroppedLocks(unittest.TestCase):
    def test_each_kind(self):
        for text in [
            "std::lock_guard lock{m};",
            "const std::lock_guard<std::mutex> lock(m);",
            "std::unique_lock<std::mutex> const lock(m);",
            "std::scoped_lock lock{m, n};",
            "ForeignCodeScope const scope(lock);",
        ]:
            self.assertEqual(changed(text, "drop-lock"), [";"], text)

    def test_not_one_that_is_named_later(self):
        self.assertEqual(changed("std::unique_lock lock{m}; c.wait(lock);", "drop-lock"), [])

    def test_notify(self):
        self.assertEqual(changed("m_changed.notify_all();", "notify-one"), ["m_changed.notify_one();"])


class DroppedGuards(unittest.TestCase):
    def of(self, text: str) -> list[str]:
        return changed(text, "drop-guard")

    def test_each_jump(self):
        for jump in ["return", "return a", "break", "continue", "throw A{b}"]:
            self.assertEqual(self.of(f"if (a) {{ {jump}; }}"), ["if (a) { ; }"])
            self.assertEqual(self.of(f"if (a) {jump};"), ["if (a) ;"])

    def test_not_without_an_if(self):
        self.assertEqual(self.of("return a;"), [])
        self.assertEqual(self.of("if (a) { f(); } else { return; }"), [])
        self.assertEqual(self.of("for (;;) { break; }"), [])


class Truth(unittest.TestCase):
    def test_swapped(self):
        self.assertEqual(changed("return true;", "swap-truth"), ["return false;"])
        self.assertEqual(changed("f(false);", "swap-truth"), ["f(true);"])

    def test_not_in_templates_and_defaults(self):
        self.assertEqual(changed("A<true> a;", "swap-truth"), [])
        self.assertEqual(changed_file("void f(bool a = true) noexcept(true);\n", "swap-truth"), [])

    def test_not_dropped(self):
        self.assertEqual(changed("return !a;", "drop-not"), ["return a;"])
        self.assertEqual(changed("return a != b;", "drop-not"), [])


class Structures(unittest.TestCase):
    def test_values_that_constructors_give(self):
        text = "A::A(int a) : m_a(a < 3), m_b{a == 4}\n{\n    f();\n}\n"
        self.assertEqual(len(changed_file(text, "swap-relation")), 2)
        self.assertEqual(len(changed_file(text, "drop-call")), 1)

    def test_literals_with_quotes_and_raw_strings(self):
        text = 'f(\'"\', "\\"", R"x(" == a)x"); g = a == b;'
        self.assertEqual(changed(text, "swap-relation"), [text.replace("a == b", "a != b")])

    def test_digits_apart(self):
        self.assertEqual(changed("f(1'000); g('a');", "off-by-one"), ["f(1001); g('a');", "f(999); g('a');"])

    def test_members_behind_access_and_templates(self):
        text = "template <class T>\nclass A {\npublic:\n    bool f() const { return m_a < 3; }\n};\n"
        self.assertEqual(len(changed_file(text, "swap-relation")), 1)


if __name__ == "__main__":
    unittest.main()
