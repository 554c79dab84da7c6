#include "common/run_error.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "common/code_page.h"

namespace norvane {

namespace {

int Number_Of_Errno(int errno_value) {
    switch (errno_value) {
        case ENOENT:
            return error_number::file_not_found;
        case ENOTDIR:
            return error_number::path_not_found;
        case EACCES:
        case EPERM:
        case EROFS:
            return error_number::permission_denied;
        case ENOSPC:
#ifdef EDQUOT
        case EDQUOT:
#endif
            return error_number::disk_full;
        case EISDIR:
        case ELOOP:
        case ENAMETOOLONG:
            return error_number::path_file_access;
        default:
            return error_number::device_io_error;
    }
}

}  // namespace

Run_Error::Run_Error(int number, std::string description, std::string for_pilot)
    : m_number(number), m_description(std::move(description)), m_for_pilot(std::move(for_pilot)) {}

Run_Error File_Error(int errno_value, const std::string& path) {
    return {Number_Of_Errno(errno_value), path + ": " + std::strerror(errno_value)};
}

Run_Error Caught_Error() {
    try {
        throw;
    } catch (const Run_Error& error) {
        return error;
    } catch (const std::filesystem::filesystem_error& error) {
        return {Number_Of_Errno(error.code().value()),
                From_Path(error.path1()) + ": " + error.code().message()};
    } catch (const std::system_error& error) {
        return {Number_Of_Errno(error.code().value()), error.what()};
    } catch (const std::out_of_range& error) {
        return {error_number::subscript_out_of_range, error.what()};
    } catch (const std::invalid_argument& error) {
        return {error_number::type_mismatch, error.what()};
    } catch (const std::overflow_error& error) {
        return {error_number::overflow, error.what()};
    } catch (const std::exception& error) {
        return {error_number::other, error.what()};
    } catch (...) {
        return {error_number::other, "Unknown failure"};
    }
}

}  // namespace norvane
