// Splitting lines into tokens.
#ifndef QUON5_RUNTIME_TOKENS_H
#define QUON5_RUNTIME_TOKENS_H

enum TOKEN_TYPE : short {
    QUOTE_DELIMITED_TOKEN = 1,
    SPACE_DELIMITED_NUMBER_TOKEN = 2,
    SPACE_DELIMITED_STRING_TOKEN = 3,
    SINGLE_QUOTE_DELIMITED_TOKEN = 4,
    PATHNAME_TOKEN = 5,
};

extern "C" {

// Splits `line` at blanks and tabs into at most `max_tokens` tokens; further ones are dropped.
// Copies each into the next row of `tokens` (max_tokens rows of `width` characters, a longer token
// is cut) and its type into `types`. A token that begins with a double or single quote runs to the
// next such quote and loses its quotes, so "" is an empty token. Rows after the last token are
// empty. Returns the number of tokens stored.
short parse_line(const char* line, short max_tokens, short width, int flags, char* tokens,
                 TOKEN_TYPE* types);

// The same for tokens between runs of any characters of `delimiters`. Quotes mean nothing, and
// there are no empty tokens.
short parse_line_delim(const char* line, short max_tokens, short width, int flags, char* tokens,
                       TOKEN_TYPE* types, const char* delimiters);

}  // extern "C"

inline constexpr short TOKEN_WIDTH = 80;

// The tokens of one line, at most `Max` of at most 79 characters, counted from 0. Tokens beyond
// count() are empty texts.
template <short Max>
class TOKENS {
 public:
    explicit TOKENS(const char* line, int flags = 65)
        : count_(parse_line(line, Max, TOKEN_WIDTH, flags, text_, types_)) {}
    TOKENS(const char* line, const char* delimiters, int flags)
        : count_(parse_line_delim(line, Max, TOKEN_WIDTH, flags, text_, types_, delimiters)) {}

    short count() const { return count_; }
    char* operator[](int i) { return text_ + i * TOKEN_WIDTH; }
    const char* operator[](int i) const { return text_ + i * TOKEN_WIDTH; }

 private:
    char text_[Max * TOKEN_WIDTH];
    TOKEN_TYPE types_[Max];
    short count_;  // last: parse_line fills the arrays first
};

#endif
