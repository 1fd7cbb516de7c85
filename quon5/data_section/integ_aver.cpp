#include "quon5/data_section/integ_aver.h"

#include <cstring>
#include <limits>

#include "base/numbers.h"
#include "runtime/error_log.h"
#include "runtime/string_operations.h"
#include "runtime/units.h"

namespace {

constexpr int kUnitsSize = 16;

// `value` in default units. A value that does not convert is logged and stays unchanged.
double to_default(double value, const char* units) {
    double converted = value;
    const short status = units_dbl_to_def(value, units, &converted);
    if (status != 0) {
        LOG_RESULT(NOT_CONVERTED_TO_DEFAULT, status, printable(value), units);
    }
    return converted;
}

double from_default(double value, const char* units) {
    int code = 0;
    double converted = value;
    units_keyword_to_code(units, &code);
    const short status = units_put_def_to_dbl(value, code, &converted);
    if (status != 0) {
        LOG_RESULT(NOT_CONVERTED_FROM_DEFAULT, status, printable(value), units);
    }
    return converted;
}

}  // namespace

double aver(const double* data_ptr, int num_values) {
    double sum = 0.0;
    for (int i = 0; i < num_values; ++i) sum += data_ptr[i];
    return num_values == 0 ? std::numeric_limits<double>::quiet_NaN()
                           : sum / static_cast<double>(num_values);
}

void cut_rate_units(char* units) {
    // Slashes at the beginning do not count, as with strtok.
    char* const slash = std::strchr(units + std::strspn(units, "/"), '/');
    if (slash != nullptr) *slash = '\0';
}

double integrate(const double* data_ptr, const char* units_data, int num_values,
                 const double* time_ptr, const char* units_time) {
    if (units_data[0] == '\0' || units_time[0] == '\0') {
        LOG(NO_UNITS_TO_INTEGRATE);
        return 0.0;
    }
    char time_units[kUnitsSize];
    copyn(time_units, units_time);
    if (std::strcmp(strupr(time_units), "SECONDS") == 0) copyn(time_units, "SEC");
    char result_units[kUnitsSize];
    copyn(result_units, units_data);
    cut_rate_units(result_units);

    double total = 0.0;
    for (int i = 0; i + 1 < num_values; ++i) {
        const double dt = to_default(time_ptr[i + 1] - time_ptr[i], time_units);
        total += to_default(data_ptr[i], units_data) * dt;
        total += to_default(data_ptr[i + 1], units_data) * dt;
    }
    return from_default(0.5 * total, result_units);
}
