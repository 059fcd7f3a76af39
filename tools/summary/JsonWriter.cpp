#include "tools/summary/JsonWriter.h"

#include <cmath>
#include <cstdio>

namespace TavInspect {

std::string JsonWriter::escape(std::string_view text) {
    std::string quoted = "\"";
    for (char c : text) {
        switch (c) {
        case '"':
            quoted += "\\\"";
            break;
        case '\\':
            quoted += "\\\\";
            break;
        case '\n':
            quoted += "\\n";
            break;
        case '\r':
            quoted += "\\r";
            break;
        case '\t':
            quoted += "\\t";
            break;
        default:
            if (static_cast<unsigned char>(c) < 0x20) {
                char code[8];
                std::snprintf(code, sizeof code, "\\u%04x", static_cast<unsigned char>(c));
                quoted += code;
            } else {
                quoted += c; // UTF-8 passes through unchanged
            }
        }
    }
    return quoted + "\"";
}

void JsonWriter::newline() {
    out_ << '\n' << std::string(2 * levels_.size(), ' ');
}

void JsonWriter::beforeValue() {
    if (afterKey_) {
        afterKey_ = false;
        return;
    }
    if (levels_.empty())
        return;
    if (!levels_.back().empty)
        out_ << ',';
    levels_.back().empty = false;
    newline();
}

void JsonWriter::key(std::string_view name) {
    beforeValue();
    out_ << escape(name) << ": ";
    afterKey_ = true;
}

void JsonWriter::beginObject() {
    beforeValue();
    out_ << '{';
    levels_.push_back({false, true});
}

void JsonWriter::beginArray() {
    beforeValue();
    out_ << '[';
    levels_.push_back({true, true});
}

void JsonWriter::endObject() {
    const bool empty = levels_.back().empty;
    levels_.pop_back();
    if (!empty)
        newline();
    out_ << '}';
    if (levels_.empty())
        out_ << '\n';
}

void JsonWriter::endArray() {
    const bool empty = levels_.back().empty;
    levels_.pop_back();
    if (!empty)
        newline();
    out_ << ']';
}

void JsonWriter::string(std::string_view text) {
    beforeValue();
    out_ << escape(text);
}

void JsonWriter::number(std::int64_t value) {
    beforeValue();
    out_ << value;
}

void JsonWriter::number(double value) {
    beforeValue();
    if (!std::isfinite(value)) {
        out_ << "null"; // JSON has no NaN or infinity
        return;
    }
    char text[32];
    std::snprintf(text, sizeof text, "%.17g", value);
    out_ << text;
}

void JsonWriter::rawNumber(std::string_view digits) {
    beforeValue();
    out_ << digits;
}

void JsonWriter::boolean(bool value) {
    beforeValue();
    out_ << (value ? "true" : "false");
}

void JsonWriter::null() {
    beforeValue();
    out_ << "null";
}

} // namespace TavInspect
