// The readers of results, on any file, and the comparison of what they read with itself.
#include <cstdlib>

#include "results/composite_file.h"
#include "results/differences.h"
#include "results/keyword_entries.h"
#include "results/log_entries.h"
#include "results/quon5_file.h"
#include "results/result_files.h"
#include "tests/fuzz/targets.h"

namespace {

template <class Contents>
void expect_same(const Contents& contents) {
    if (!compare(contents, contents, Comparison()).empty()) abort();
}

}  // namespace

void run_results(std::string_view input) {
    kind_of(input);
    expect_same(read_quon5_file(input));
    expect_same(read_keyword_entries(input));
    const CompositeFile composite = read_composite_file(input);
    for (const CompositeChannel& channel : composite.channels) {
        const std::size_t size = channel.values.size();
        if (size != composite.channels.front().values.size()) abort();
        channel.deskew_seconds();
    }
    expect_same(composite);
    for (const LogEntry& entry : read_error_log(input).entries) entry.message();
}
