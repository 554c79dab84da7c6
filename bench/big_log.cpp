#include "big_log.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <stdexcept>

#include "common/date_time.h"
#include "config/log_names.h"
#include "flightlog/log_columns.h"

namespace norvane {

namespace fs = std::filesystem;

namespace {

std::string Random_Flight(std::mt19937& random) {
    const Date date = Date_Of_Day_Number(10'000 + static_cast<std::int64_t>(random() % 8'000));
    std::string line = Format_Iso_Date(date);
    for (std::size_t column = 1; column < log_column_count; ++column) {
        line += '|';
        if (column == log_column::time_out)
            line += fmt::format("{:02}{:02}Z", random() % 24, random() % 60);
        else if (column == log_column::block_time || column == log_column::flight_time)
            line += fmt::format("{}.{}", random() % 12, random() % 10);
        else
            line += std::string(1 + random() % 14, static_cast<char>('A' + random() % 26));
    }
    return line + "\r\n";
}

}  // namespace

Big_Log::Big_Log() {
    std::string name = (fs::temp_directory_path() / "norvane-bench-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("no temporary directory");
    services.program_directory = name;
    services.regional.short_date = "yyyy-MM-dd";
    fs::create_directories(services.program_directory / "logs");
    path = Log_Path(services, default_log_name);
    std::mt19937 random(1);
    std::ofstream out(path, std::ios::binary);
    for (int i = 0; i < flights; ++i)
        out << Random_Flight(random);
    out.close();
    size = static_cast<double>(fs::file_size(path));
}

Big_Log::~Big_Log() {
    std::error_code ignored;
    fs::remove_all(services.program_directory, ignored);
}

Big_Log& Big_Log::The_One() {
    static Big_Log log;
    return log;
}

double Big_Log::Sqlite_Seconds(const std::string& query) const {
    const std::string command = fmt::format("{}/scripts/bench_sqlite.sh '{}' '{}'",
                                            NORVANE_SOURCE_DIR, path.string(), query);
    double best = 0;
    for (int tried = 0; tried < 3; ++tried) {
        double seconds = 0;
        FILE* pipe = ::popen(command.c_str(), "r");
        if (pipe == nullptr || std::fscanf(pipe, "%lf", &seconds) != 1)
            seconds = 0;
        if (pipe != nullptr)
            ::pclose(pipe);
        best = tried == 0 ? seconds : std::min(best, seconds);
    }
    return best;
}

}  // namespace norvane
