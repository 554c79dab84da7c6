#include "app/error_log_file.h"

#include "common/file_writer.h"

namespace norvane {

void Error_Log_File::Append(const std::string& entry) {
    Append_To_File(m_file, entry);
}

}  // namespace norvane
