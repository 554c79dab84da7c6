#include "config/field_definitions.h"

#include "common/code_page.h"
#include "common/line_reader.h"
#include "common/text.h"

namespace norvane {

Field_Definitions Read_Field_Definitions(const std::filesystem::path& file, std::size_t most) {
    Field_Definitions definitions;
    const std::string content = Read_File(file);
    for (Line_Reader reader(content); definitions.fields.size() < most && reader.Next();) {
        const std::string_view line = reader.Line();
        if (Trimmed_View(line).empty())
            continue;
        const auto mark = line.find('^');
        if (mark == std::string_view::npos) {
            definitions.failure = From_Path(file) + ", line " +
                                  std::to_string(reader.Line_Number()) +
                                  ": no \"^\" behind the field's name";
            break;
        }
        Field_Definition field{std::string(line.substr(0, mark)), {}};
        const std::string_view entries = Before(line.substr(mark + 1), "^");
        if (!entries.empty())
            field.entries = Split(entries, field_separator);
        definitions.fields.push_back(std::move(field));
    }
    return definitions;
}

}  // namespace norvane
