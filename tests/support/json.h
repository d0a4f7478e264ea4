#pragma once

#include "hostif/value.h"
#include "text/utf8.h"

#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace genutil::fake {

// Reads the JSON of the test data: every number is a double; no characters above U+FFFF.
struct Json {
    Value value;
    std::vector<Json> items; // of an array or an object
    std::vector<std::string> names;

    const Json& operator[](const std::string& name) const {
        for (std::size_t i = 0; i < names.size(); ++i)
            if (names[i] == name)
                return items[i];
        throw std::out_of_range(name);
    }
};

class JsonReader {
public:
    explicit JsonReader(std::string_view text) : rest_(text) {}

    Json read() {
        Json json;
        if (take("null") || take("true") || take("false"))
            json.value = taken_ == "null" ? Value() : Value(taken_ == "true");
        else if (take("\""))
            json.value = string();
        else if (take("["))
            while (!take("]")) {
                json.items.push_back(read());
                take(",");
            }
        else if (take("{"))
            while (!take("}")) {
                take("\"");
                json.names.push_back(string());
                take(":");
                json.items.push_back(read());
                take(",");
            }
        else {
            const std::string digits(rest_.substr(0, rest_.find_first_of(",]} ")));
            json.value = std::strtod(digits.c_str(), nullptr);
            rest_.remove_prefix(digits.size());
        }
        return json;
    }

private:
    bool take(std::string_view word) {
        while (rest_.starts_with(' ') || rest_.starts_with('\n'))
            rest_.remove_prefix(1);
        if (!rest_.starts_with(word))
            return false;
        taken_ = word;
        rest_.remove_prefix(word.size());
        return true;
    }
    std::string string() {
        std::string text;
        for (; !rest_.starts_with('"'); rest_.remove_prefix(1)) {
            if (rest_[0] != '\\') {
                text += rest_[0];
                continue;
            }
            rest_.remove_prefix(1);
            const char escape = rest_[0];
            if (escape != 'u') {
                text += escape == 'n' ? '\n' : escape == 'r' ? '\r' : escape == 't' ? '\t' : escape;
                continue;
            }
            text::appendUtf8(
                text, static_cast<char32_t>(std::stoul(std::string(rest_.substr(1, 4)), nullptr, 16)));
            rest_.remove_prefix(4);
        }
        rest_.remove_prefix(1);
        return text;
    }

    std::string_view rest_;
    std::string_view taken_;
};

} // namespace genutil::fake
