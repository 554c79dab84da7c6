#include "flightlog/log_line.h"

#include <algorithm>
#include <array>

#include "common/text.h"
#include "flightlog/log_columns.h"

namespace norvane {

namespace {

// A size that the compiler counts at once; the sum of a block fits a byte.
constexpr std::size_t block_size = 32;

// What the pilot cannot edit before trying again: the four times and the fuel at the gate.
constexpr std::array<std::size_t, 5> identity_columns{log_column::time_out, 6, 7, 10, 11};

}  // namespace

std::size_t Separators_In(std::string_view line) {
    std::size_t found = 0;
    while (line.size() >= block_size) {
        unsigned char in_block = 0;
        for (std::size_t i = 0; i < block_size; ++i)
            in_block = static_cast<unsigned char>(in_block + (line[i] == field_separator ? 1 : 0));
        found += in_block;
        line.remove_prefix(block_size);
    }
    return found + static_cast<std::size_t>(std::count(line.begin(), line.end(), field_separator));
}

std::string_view First_Fields(std::string_view line) {
    if (Separators_In(line) < log_column_count)
        return line;
    // The field behind the last one begins one past the separator that ends it.
    return line.substr(0, Begin_Of_Field(line, log_column_count) - 1);
}

std::string Whole_Line(std::string_view line) {
    std::string whole(First_Fields(line));
    whole.append(log_column_count - 1 - Separators_In(whole), field_separator);
    return whole;
}

std::size_t Begin_Of_Field(std::string_view line, std::size_t column) {
    std::size_t begin = 0;
    for (std::size_t i = 0; i < column; ++i) {
        const std::size_t separator = line.find(field_separator, begin);
        if (separator == std::string_view::npos)
            return separator;
        begin = separator + 1;
    }
    return begin;
}

std::string_view Field_At(std::string_view line, std::size_t begin) {
    return line.substr(begin, line.find(field_separator, begin) - begin);
}

std::string_view Field_Of(std::string_view line, std::size_t column) {
    const std::size_t begin = Begin_Of_Field(line, column);
    return begin == std::string_view::npos ? std::string_view() : Field_At(line, begin);
}

bool Same_Flight(std::string_view a, std::string_view b) {
    if (a == b)
        return true;
    return !Field_Of(a, log_column::time_out).empty() &&
           std::all_of(identity_columns.begin(), identity_columns.end(), [&](std::size_t column) {
               return Field_Of(a, column) == Field_Of(b, column);
           });
}

bool Same_Flight_Of_Day(std::string_view a, std::string_view b) {
    return Field_Of(a, log_column::date) == Field_Of(b, log_column::date) && Same_Flight(a, b);
}

}  // namespace norvane
