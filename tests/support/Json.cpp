#include "tests/support/Json.h"

#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace TavTest {

namespace {

bool oneOf(const char* set, char c) {
    return c != '\0' && std::strchr(set, c) != nullptr;
}

struct Parser {
    const std::string& s;
    std::size_t pos = 0;
    FlatJson out{};

    [[noreturn]] void fail(const std::string& what) const {
        throw std::runtime_error("JSON: " + what + " at byte " + std::to_string(pos));
    }
    char peek() {
        while (pos < s.size() && oneOf(" \n\t\r", s[pos]))
            ++pos;
        if (pos >= s.size())
            fail("unexpected end");
        return s[pos];
    }
    bool take(char c) {
        if (peek() != c)
            return false;
        ++pos;
        return true;
    }
    void expect(char c) {
        if (!take(c))
            fail(std::string("expected '") + c + "'");
    }

    void value(const std::string& path) {
        const std::string prefix = path.empty() ? path : path + ".";
        std::size_t size = 0;
        if (take('{')) {
            if (!take('}')) {
                do {
                    peek();
                    const std::string key = string();
                    expect(':');
                    value(prefix + key.substr(1, key.size() - 2));
                    ++size;
                } while (take(','));
                expect('}');
            }
        } else if (take('[')) {
            if (!take(']')) {
                do
                    value(prefix + std::to_string(size++));
                while (take(','));
                expect(']');
            }
        } else {
            out[path] = peek() == '"' ? string() : scalar();
            return;
        }
        out[path] = std::to_string(size);
    }

    std::string string() {
        expect('"');
        std::string text = "\"";
        while (pos < s.size() && s[pos] != '"') {
            const char c = s[pos++];
            // Raw control characters are not JSON: the writer must escape them.
            if (static_cast<unsigned char>(c) < 0x20)
                fail("control character in a string");
            if (c != '\\') {
                text += c;
                continue;
            }
            const char* escapes = "\"\\/bfnrt";
            const char e = pos < s.size() ? s[pos++] : '\0';
            if (oneOf(escapes, e)) {
                text += "\"\\/\b\f\n\r\t"[std::strchr(escapes, e) - escapes];
            } else if (e == 'u' && pos + 4 <= s.size()) {
                const unsigned long code = std::stoul(s.substr(pos, 4), nullptr, 16);
                if (code >= 0x80)
                    fail("\\u escape beyond ASCII");
                text += static_cast<char>(code);
                pos += 4;
            } else {
                fail("bad escape");
            }
        }
        if (pos++ >= s.size())
            fail("unterminated string");
        return text + '"';
    }

    std::string scalar() {
        for (const char* word : {"null", "true", "false"}) {
            if (s.compare(pos, std::strlen(word), word) == 0) {
                pos += std::strlen(word);
                return word;
            }
        }
        const std::size_t start = pos;
        while (pos < s.size() && oneOf("+-0123456789.eE", s[pos]))
            ++pos;
        const std::string text = s.substr(start, pos - start);
        char* end = nullptr;
        std::strtod(text.c_str(), &end);
        if (text.empty() || end != text.c_str() + text.size())
            fail("bad value '" + text + "'");
        return text;
    }
};

} // namespace

FlatJson parseJson(const std::string& text) {
    Parser p{text};
    p.value("");
    if (text.find_first_not_of(" \n\t\r", p.pos) != std::string::npos)
        p.fail("text after the value");
    return std::move(p.out);
}

} // namespace TavTest
