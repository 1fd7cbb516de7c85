// The phases of the test, for a logger that has no synchronisation channel.
#ifndef QUON5_TOOLS_CSV2LOGR_PHASES_H
#define QUON5_TOOLS_CSV2LOGR_PHASES_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The phases start, cycle, overrun and end, in this order, each from a time or a mark on.
class Phases {
 public:
    // Reads `start:0,cycle:30,overrun:1230,end:1250`, times of the time channel, or
    // `column:LABEL,start:MARK,...`, marks in a column. The cycle must be there. An empty text has
    // no phases. Throws Failure for any other text.
    explicit Phases(const std::string& text);

    bool empty() const { return phases_.empty(); }
    const std::string& mark_column() const { return column_; }

    // The synchronisation code of a record, by its time or by its mark; the codes never go back.
    // Without a value when the mark belongs to an earlier phase.
    int code_at(double time);
    std::optional<int> code_of(std::string_view mark);

    // The name of the first phase that has no record yet; empty when all have.
    std::string missing() const;

 private:
    struct Phase {
        std::string name;
        int code;
        std::string mark;
        double time = 0.0;
        bool has_record = false;
    };
    void add(const std::string& name, const std::string& mark);
    int enter(std::size_t number);

    std::vector<Phase> phases_;
    std::string column_;
    std::size_t entered_ = 0;  // number of phases that began
};

#endif
