#include "common/gzip_writer.h"

#include <zlib.h>

#include <new>
#include <string>

#include "common/code_page.h"
#include "common/file_writer.h"
#include "common/line_reader.h"
#include "common/run_error.h"

namespace norvane {

namespace {

/// zlib's: the largest window, in gzip's frame, and the memory that it takes as a rule.
constexpr int gzip_window = 15 + 16;
constexpr int usual_memory = 8;

std::string Packed(std::string_view text) {
    z_stream stream{};
    if (::deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, gzip_window, usual_memory,
                       Z_DEFAULT_STRATEGY) != Z_OK)
        throw std::bad_alloc();
    std::string packed(::deflateBound(&stream, text.size()), '\0');
    // zlib promises not to change what it reads.
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    const int result = ::deflate(&stream, Z_FINISH);
    packed.resize(packed.size() - stream.avail_out);
    ::deflateEnd(&stream);
    if (result != Z_STREAM_END)
        throw Run_Error(error_number::other, "A text could not be packed");
    return packed;
}

}  // namespace

void Add_To_Packed_File(const std::filesystem::path& file, std::string_view text) {
    // A packed file may consist of several, one behind the other.
    Write_File_Atomically(file, Read_File(file) + Packed(text));
}

}  // namespace norvane
