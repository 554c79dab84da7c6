#include "config/field_definitions.h"

#include "common/code_page.h"
#include "common/line_reader.h"
#include "common/text.h"

namespace norvane {

Field_Definitions Read_Field_Definitions(const std::filesystem::path& file, std::size_t most) {
    Field_Definitions definitions;
    const std::string content = Read_File(file);
    for (Line_Reader reader(content); definitions.fields.size() < most && reader.Next();) {
        if (Trimmed_View(reader.Line()).empty())
            continue;
        const auto parts = Split(reader.Line(), '^');
        if (parts.size() < 2) {
            definitions.failure = From_Path(file) + ", line " +
                                  std::to_string(reader.Line_Number()) +
                                  ": no \"^\" behind the field's name";
            break;
        }
        Field_Definition field{parts[0], {}};
        if (!parts[1].empty())
            field.entries = Split(parts[1], field_separator);
        definitions.fields.push_back(std::move(field));
    }
    return definitions;
}

}  // namespace norvane
