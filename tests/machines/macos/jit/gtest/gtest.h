// The part of the test framework that the tests in this folder use, for code linked where neither exceptions
// nor static initialisers work. The runner finds the tests by name.
#pragma once

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

namespace testing {

class Test {
  public:
    Test() = default;
    Test(const Test&) = delete;
    Test& operator=(const Test&) = delete;
    virtual ~Test() = default;

    void run() {
        SetUp();
        TestBody();
        TearDown();
    }

  protected:
    virtual void SetUp() {}

    virtual void TearDown() {}

  private:
    virtual void TestBody() = 0;
};

namespace standin {

/// Prints a failed expectation and counts it against the run.
void reportFailure(const char* file, int line, const std::string& what);

/// A value as text, as far as its type has one.
template <typename T>
std::string textOf(const T& value) {
    if constexpr (std::is_same_v<T, bool>) {
        return value ? "true" : "false";
    } else if constexpr (std::is_same_v<T, std::nullopt_t> || std::is_null_pointer_v<T>) {
        return "nothing";
    } else if constexpr (std::is_convertible_v<const T&, std::string_view>) {
        return '"' + std::string(std::string_view(value)) + '"';
    } else if constexpr (std::is_arithmetic_v<T>) {
        return std::to_string(value);
    } else if constexpr (std::is_enum_v<T>) {
        return std::to_string(static_cast<std::underlying_type_t<T>>(value));
    } else if constexpr (requires { value.has_value() ? *value : *value; }) {
        return value.has_value() ? textOf(*value) : "nothing";
    } else if constexpr (requires { std::visit([](const auto&) {}, value); }) {
        return std::visit([](const auto& held) { return textOf(held); }, value);
    } else if constexpr (requires { value.first, value.second; }) {
        return textOf(value.first) + ": " + textOf(value.second);
    } else if constexpr (requires { value.begin() != value.end(); }) {
        std::string all;
        for (const auto& each : value) all += (all.empty() ? "" : ", ") + textOf(each);
        return '{' + all + '}';
    } else if constexpr (requires { value == nullptr; }) {
        return value == nullptr ? "nothing" : "something";
    } else {
        return '(' + std::to_string(sizeof(T)) + " bytes)";
    }
}

/// The message of a failure. Texts are printed as they are.
class Message {
  public:
    template <typename T>
    Message& operator<<(const T& part) {
        if constexpr (std::is_convertible_v<const T&, std::string_view>) {
            text += std::string_view(part);
        } else {
            text += textOf(part);
        }
        return *this;
    }

    std::string text;
};

struct Failure {
    const char* file;
    int line;
    std::string what;

    /// Assigned after the message, and void, so that a failed assertion can return it.
    void operator=(const Message& message) const {
        reportFailure(file, line, message.text.empty() ? what : what + '\n' + message.text);
    }
};

/// Nothing when the comparison holds, otherwise the message.
template <typename Left, typename Right, typename Compare>
std::optional<std::string> mismatch(const char* expression, const Left& left, const Right& right,
                                    Compare compare) {
    if (compare(left, right)) return std::nullopt;
    return std::string("expected: ") + expression + "\n    left: " + textOf(left) +
           "\n   right: " + textOf(right);
}

inline std::optional<std::string> mismatch(const char* expression, bool value, bool expected) {
    if (value == expected) return std::nullopt;
    return std::string("expected ") + (expected ? "true: " : "false: ") + expression;
}

} // namespace standin

} // namespace testing

#define STANDIN_TEST(fixture, suite, name)                                                                   \
    class suite##_##name##_Test final : public fixture {                                                     \
        void TestBody() override;                                                                            \
    };                                                                                                       \
    extern "C" void test_##suite##_##name() { suite##_##name##_Test().run(); }                               \
    void suite##_##name##_Test::TestBody()
#define TEST(suite, name) STANDIN_TEST(testing::Test, suite, name)
#define TEST_F(fixture, name) STANDIN_TEST(fixture, fixture, name)

// A switch, so that a following `else` cannot bind to it.
#define STANDIN_CHECK(leave, found)                                                                          \
    switch (0)                                                                                               \
    case 0:                                                                                                  \
    default:                                                                                                 \
        if (const auto standinFound = found; !standinFound) {                                                \
        } else                                                                                               \
            leave testing::standin::Failure{__FILE__, __LINE__, *standinFound} = testing::standin::Message()
#define STANDIN_COMPARE(leave, left, right, sign)                                                            \
    STANDIN_CHECK(leave, testing::standin::mismatch(#left " " #sign " " #right, left, right,                 \
                                                    [](const auto& a, const auto& b) { return a sign b; }))
#define STANDIN_TRUTH(leave, value, expected)                                                                \
    STANDIN_CHECK(leave, testing::standin::mismatch(#value, static_cast<bool>(value), expected))

#define EXPECT_TRUE(value) STANDIN_TRUTH(, value, true)
#define EXPECT_FALSE(value) STANDIN_TRUTH(, value, false)
#define EXPECT_EQ(left, right) STANDIN_COMPARE(, left, right, ==)
#define EXPECT_NE(left, right) STANDIN_COMPARE(, left, right, !=)
#define EXPECT_LT(left, right) STANDIN_COMPARE(, left, right, <)
#define EXPECT_LE(left, right) STANDIN_COMPARE(, left, right, <=)
#define EXPECT_GT(left, right) STANDIN_COMPARE(, left, right, >)
#define EXPECT_GE(left, right) STANDIN_COMPARE(, left, right, >=)
#define ASSERT_TRUE(value) STANDIN_TRUTH(return, value, true)
#define ASSERT_FALSE(value) STANDIN_TRUTH(return, value, false)
#define ASSERT_EQ(left, right) STANDIN_COMPARE(return, left, right, ==)
#define ASSERT_NE(left, right) STANDIN_COMPARE(return, left, right, !=)
#define ASSERT_LT(left, right) STANDIN_COMPARE(return, left, right, <)
#define ASSERT_LE(left, right) STANDIN_COMPARE(return, left, right, <=)
#define ASSERT_GT(left, right) STANDIN_COMPARE(return, left, right, >)
#define ASSERT_GE(left, right) STANDIN_COMPARE(return, left, right, >=)
