#include "runtime/paths.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "base/open_file.h"
#include "runtime/error_log.h"
#include "runtime/string_operations.h"

namespace {

void copy_part(char* dest, std::string_view part, std::size_t size) {
    copyn(dest, std::string(part).c_str(), size);
}

void report_open_failure(const char* filename) {
    LOG(SIBLING_NOT_OPENED, filename, strerror(errno));
}

}  // namespace

void _splitpath(const char* path, char* node, char* dir, char* fname, char* ext) {
    const std::string_view whole = path;
    const std::size_t slash = whole.rfind('/');
    const std::size_t name_start = slash == std::string_view::npos ? 0 : slash + 1;
    const std::string_view name = whole.substr(name_start);
    const std::size_t dot = std::min(name.rfind('.'), name.size());
    node[0] = '\0';
    copy_part(dir, whole.substr(0, name_start), PATH_DIR_SIZE);
    copy_part(fname, name.substr(0, dot), PATH_NAME_SIZE);
    copy_part(ext, name.substr(dot), PATH_EXT_SIZE);
}

int file_append(const char* first, const char* second) {
    const File source(open_for_reading(first));
    if (source == nullptr) {
        report_open_failure(first);
        return -1;
    }
    // A file appended to itself would grow for ever.
    if (is_same_file(first, second)) {
        LOG(SIBLING_IS_QUON5_FILE, first, second);
        return -1;
    }
    File target(open_for_writing(second, WRITE_APPEND));
    if (target == nullptr) {
        report_open_failure(second);
        File_failed = true;
        return -1;
    }
    char block[65536];
    std::size_t length = 0;
    while ((length = fread(block, 1, sizeof block, source.get())) > 0) {
        fwrite(block, 1, length, target.get());
    }
    const bool whole = ferror(source.get()) == 0;
    return fclose(target.release()) == 0 && whole ? 0 : -1;
}
