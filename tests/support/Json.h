#pragma once

#include <map>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace TavTest {

// A parsed JSON value: enough of JSON to read the tools' output and the
// expected summaries. Numbers keep their text so that tests can compare it.
struct Json {
    struct Number {
        double value = 0;
        std::string text;
    };
    using Array = std::vector<Json>;
    using Object = std::map<std::string, Json>;

    std::variant<std::nullptr_t, bool, Number, std::string, Array, Object> value;

    bool isNull() const { return std::holds_alternative<std::nullptr_t>(value); }
    bool has(const std::string& key) const;
    // Throws std::runtime_error on a wrong type or a missing key.
    const Json& operator[](const std::string& key) const;
    const Json& operator[](std::size_t index) const;
    double number() const;
    const std::string& numberText() const;
    const std::string& string() const;
    bool boolean() const;
    const Array& array() const;
    const Object& object() const;
    std::size_t size() const;

    // Throws std::runtime_error with the byte position on malformed input.
    static Json parse(const std::string& text);
};

} // namespace TavTest
