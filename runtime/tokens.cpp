#include "runtime/tokens.h"

#include <cstring>
#include <string_view>

#include "base/numbers.h"

namespace {

constexpr char kBlanksAndTabs[] = " \t";

// The rows for the tokens of one line.
class TokenRows {
 public:
    TokenRows(char* rows, TOKEN_TYPE* types, short max_tokens, short width)
        : rows_(rows), types_(types), max_tokens_(max_tokens), width_(width) {
        for (int i = 0; i < max_tokens; ++i) rows_[i * width_] = '\0';
    }

    bool full() const { return count_ == max_tokens_; }
    short count() const { return count_; }

    // Stores a token with its type. Without one, the text shows it: a path, a number or a string.
    void store(std::string_view token, TOKEN_TYPE type) {
        char* row = rows_ + count_ * width_;
        const std::string_view cut = token.substr(0, static_cast<std::size_t>(width_ - 1));
        std::memcpy(row, cut.data(), cut.size());
        row[cut.size()] = '\0';
        types_[count_] = type;
        ++count_;
    }
    void store(std::string_view token) {
        store(token, SPACE_DELIMITED_STRING_TOKEN);
        const char* row = rows_ + (count_ - 1) * width_;
        const char* end = nullptr;
        leading_number(row, &end);
        if (row[0] == '/') {
            types_[count_ - 1] = PATHNAME_TOKEN;
        } else if (end != row && *end == '\0') {
            types_[count_ - 1] = SPACE_DELIMITED_NUMBER_TOKEN;
        }
    }

 private:
    char* rows_;
    TOKEN_TYPE* types_;
    short max_tokens_;
    short width_;
    short count_ = 0;
};

}  // namespace

short parse_line(const char* line, short max_tokens, short width, int /*flags*/, char* tokens,
                 TOKEN_TYPE* types) {
    TokenRows rows(tokens, types, max_tokens, width);
    const char* at = line + std::strspn(line, kBlanksAndTabs);
    while (*at != '\0' && !rows.full()) {
        if (*at == '"' || *at == '\'') {
            const char quote[] = {*at, '\0'};
            const std::size_t length = std::strcspn(++at, quote);
            rows.store({at, length},
                       *quote == '"' ? QUOTE_DELIMITED_TOKEN : SINGLE_QUOTE_DELIMITED_TOKEN);
            at += length;
            if (*at != '\0') ++at;  // the closing quote
        } else {
            const std::size_t length = std::strcspn(at, kBlanksAndTabs);
            rows.store({at, length});
            at += length;
        }
        at += std::strspn(at, kBlanksAndTabs);
    }
    return rows.count();
}

short parse_line_delim(const char* line, short max_tokens, short width, int /*flags*/, char* tokens,
                       TOKEN_TYPE* types, const char* delimiters) {
    TokenRows rows(tokens, types, max_tokens, width);
    const char* at = line + std::strspn(line, delimiters);
    while (*at != '\0' && !rows.full()) {
        const std::size_t length = std::strcspn(at, delimiters);
        rows.store({at, length});
        at += length;
        at += std::strspn(at, delimiters);
    }
    return rows.count();
}
