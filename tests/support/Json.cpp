#include "tests/support/Json.h"

#include <cstdlib>
#include <stdexcept>

namespace TavTest {

namespace {

class Parser {
public:
    explicit Parser(const std::string& text) : s_(text) {}

    Json document() {
        Json v = value(0);
        skipSpace();
        if (pos_ != s_.size())
            fail("text after the value");
        return v;
    }

private:
    static constexpr int kMaxDepth = 64;

    [[noreturn]] void fail(const std::string& what) const {
        throw std::runtime_error("JSON: " + what + " at byte " + std::to_string(pos_));
    }
    void skipSpace() {
        while (pos_ < s_.size() &&
               (s_[pos_] == ' ' || s_[pos_] == '\n' || s_[pos_] == '\t' || s_[pos_] == '\r'))
            ++pos_;
    }
    char peek() {
        skipSpace();
        if (pos_ >= s_.size())
            fail("unexpected end");
        return s_[pos_];
    }
    void expect(char c) {
        if (peek() != c)
            fail(std::string("expected '") + c + "'");
        ++pos_;
    }
    bool literal(const char* word) {
        const std::string w(word);
        if (s_.compare(pos_, w.size(), w) != 0)
            return false;
        pos_ += w.size();
        return true;
    }

    Json value(int depth) {
        if (depth > kMaxDepth)
            fail("nesting too deep");
        const char c = peek();
        if (c == '{')
            return Json{object(depth)};
        if (c == '[')
            return Json{array(depth)};
        if (c == '"')
            return Json{string()};
        if (literal("null"))
            return Json{nullptr};
        if (literal("true"))
            return Json{true};
        if (literal("false"))
            return Json{false};
        return Json{number()};
    }

    Json::Object object(int depth) {
        Json::Object o;
        expect('{');
        if (peek() == '}') {
            ++pos_;
            return o;
        }
        while (true) {
            peek();
            std::string key = string();
            expect(':');
            o[key] = value(depth + 1);
            if (peek() == '}') {
                ++pos_;
                return o;
            }
            expect(',');
        }
    }

    Json::Array array(int depth) {
        Json::Array a;
        expect('[');
        if (peek() == ']') {
            ++pos_;
            return a;
        }
        while (true) {
            a.push_back(value(depth + 1));
            if (peek() == ']') {
                ++pos_;
                return a;
            }
            expect(',');
        }
    }

    void appendUtf8(std::string& out, unsigned code) {
        if (code < 0x80) {
            out += static_cast<char>(code);
        } else if (code < 0x800) {
            out += static_cast<char>(0xC0 | (code >> 6));
            out += static_cast<char>(0x80 | (code & 0x3F));
        } else {
            out += static_cast<char>(0xE0 | (code >> 12));
            out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (code & 0x3F));
        }
    }

    std::string string() {
        expect('"');
        std::string out;
        while (true) {
            if (pos_ >= s_.size())
                fail("unterminated string");
            const char c = s_[pos_++];
            if (c == '"')
                return out;
            if (static_cast<unsigned char>(c) < 0x20)
                fail("control character in a string");
            if (c != '\\') {
                out += c;
                continue;
            }
            if (pos_ >= s_.size())
                fail("unterminated escape");
            const char e = s_[pos_++];
            switch (e) {
            case '"':
            case '\\':
            case '/':
                out += e;
                break;
            case 'n':
                out += '\n';
                break;
            case 't':
                out += '\t';
                break;
            case 'r':
                out += '\r';
                break;
            case 'b':
                out += '\b';
                break;
            case 'f':
                out += '\f';
                break;
            case 'u': {
                if (pos_ + 4 > s_.size())
                    fail("short \\u escape");
                appendUtf8(out, static_cast<unsigned>(std::stoul(s_.substr(pos_, 4), nullptr, 16)));
                pos_ += 4;
                break;
            }
            default:
                fail("unknown escape");
            }
        }
    }

    Json::Number number() {
        const std::size_t start = pos_;
        while (pos_ < s_.size() &&
               std::string("+-0123456789.eE").find(s_[pos_]) != std::string::npos)
            ++pos_;
        if (start == pos_)
            fail("unexpected character");
        Json::Number n;
        n.text = s_.substr(start, pos_ - start);
        char* end = nullptr;
        n.value = std::strtod(n.text.c_str(), &end);
        if (end != n.text.c_str() + n.text.size())
            fail("bad number " + n.text);
        return n;
    }

    const std::string& s_;
    std::size_t pos_ = 0;
};

template <typename T> const T& as(const Json& j, const char* what) {
    if (const T* v = std::get_if<T>(&j.value))
        return *v;
    throw std::runtime_error(std::string("JSON value is not ") + what);
}

} // namespace

Json Json::parse(const std::string& text) {
    return Parser(text).document();
}

bool Json::has(const std::string& key) const {
    const auto* o = std::get_if<Object>(&value);
    return o != nullptr && o->count(key) != 0;
}

const Json& Json::operator[](const std::string& key) const {
    const auto& o = object();
    const auto it = o.find(key);
    if (it == o.end())
        throw std::runtime_error("JSON object has no key " + key);
    return it->second;
}

const Json& Json::operator[](std::size_t index) const {
    const auto& a = array();
    if (index >= a.size())
        throw std::runtime_error("JSON array index out of range");
    return a[index];
}

double Json::number() const {
    return as<Number>(*this, "a number").value;
}
const std::string& Json::numberText() const {
    return as<Number>(*this, "a number").text;
}
const std::string& Json::string() const {
    return as<std::string>(*this, "a string");
}
bool Json::boolean() const {
    return as<bool>(*this, "a boolean");
}
const Json::Array& Json::array() const {
    return as<Array>(*this, "an array");
}
const Json::Object& Json::object() const {
    return as<Object>(*this, "an object");
}

std::size_t Json::size() const {
    if (const auto* a = std::get_if<Array>(&value))
        return a->size();
    return object().size();
}

} // namespace TavTest
