#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace TavInspect {

// A streaming JSON writer with two-space indentation. Keys and values are
// written in the order given; commas and nesting are its business.
class JsonWriter {
public:
    explicit JsonWriter(std::ostream& out) : out_(out) {}

    void beginObject();
    void endObject();
    void beginArray();
    void endArray();
    void key(std::string_view name);

    void string(std::string_view text);
    void number(std::int64_t value);
    void number(double value);
    // A number already formatted, e.g. a time with exactly nine decimals.
    void rawNumber(std::string_view digits);
    void boolean(bool value);
    void null();

    static std::string escape(std::string_view text);

private:
    void beforeValue();
    void newline();

    std::ostream& out_;
    struct Level {
        bool array = false;
        bool empty = true;
    };
    std::vector<Level> levels_;
    bool afterKey_ = false;
};

} // namespace TavInspect
