#include "blackbox/landing_grades.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "common/code_page.h"
#include "common/find_file.h"
#include "common/line_reader.h"
#include "common/log_error.h"
#include "common/number.h"
#include "common/services.h"
#include "common/text.h"
#include "config/airline_list.h"

namespace norvane {

namespace {

constexpr std::string_view file_name = "landing.cfg";
constexpr std::string_view no_limit = "more";
constexpr char comment_mark = ';';
constexpr std::size_t fields_of_a_grade = 2;

/// What is wrong with the line; empty when it was taken over.
std::string Take_Grade(std::string_view line, std::vector<Landing_Grade>& grades) {
    const auto fields = Split(line, field_separator);
    if (fields.size() != fields_of_a_grade)
        return "no \"LIMIT|WORD\"";
    Landing_Grade grade;
    grade.word = Trim(fields[1]);
    if (grade.word.empty())
        return "no word behind \"|\"";
    if (!Equal_No_Case(Trimmed_View(fields[0]), no_limit)) {
        const auto limit = Parse_Number(fields[0]);
        if (!limit || *limit <= 0)
            return "the limit is neither a number of feet a minute above 0 nor \"more\"";
        grade.most_fpm = *limit;
    }
    if (!grades.empty() && grade.most_fpm <= grades.back().most_fpm)
        return "the limit is not above the one before";
    grades.push_back(std::move(grade));
    return {};
}

}  // namespace

std::string Landing_Grades::Word_For(double rate_fpm) const {
    const auto grade = std::find_if(m_grades.begin(), m_grades.end(),
                                    [&](const auto& row) { return -rate_fpm <= row.most_fpm; });
    return grade == m_grades.end() ? std::string() : grade->word;
}

Landing_Grades Default_Landing_Grades() {
    return Landing_Grades({{100, "very smooth"},
                           {200, "smooth"},
                           {300, "normal"},
                           {400, "firm"},
                           {600, "hard"},
                           {std::numeric_limits<double>::infinity(), "very hard"}});
}

Landing_Grades Read_Landing_Grades(const std::filesystem::path& file) {
    std::vector<Landing_Grade> grades;
    const std::string content = Read_File(file);
    const auto refuse = [&](std::size_t line, const std::string& fault) {
        throw Run_Error(error_number::invalid_call,
                        From_Path(file) + ", line " + std::to_string(line) + ": " + fault);
    };
    Line_Reader reader(content);
    while (reader.Next()) {
        const std::string_view line = Trimmed_View(reader.Line());
        if (line.empty() || line.front() == comment_mark)
            continue;
        if (const std::string fault = Take_Grade(line, grades); !fault.empty())
            refuse(reader.Line_Number(), fault);
    }
    if (grades.empty())
        refuse(std::max<std::size_t>(reader.Line_Number(), 1), "no grade");
    return Landing_Grades(std::move(grades));
}

Landing_Grades Find_Landing_Grades(Services& services, std::string_view airline) {
    const std::string own = Airline_Directory(airline) + "\\";
    for (const std::string& directory : {own, std::string("bin\\")}) {
        const auto file =
            Find_Path(services, services.program_directory, directory + std::string(file_name));
        std::error_code unknown;
        if (!std::filesystem::exists(file, unknown))
            continue;
        Landing_Grades grades = Default_Landing_Grades();
        (void)Guarded(services, "modFunctions.Find_Landing_Grades()", Show::silent,
                      [&] { grades = Read_Landing_Grades(file); });
        return grades;
    }
    return Default_Landing_Grades();
}

}  // namespace norvane
