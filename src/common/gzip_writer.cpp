#include "common/gzip_writer.h"

#include <new>

#include "common/file_writer.h"
#include "common/line_reader.h"
#include "common/run_error.h"

namespace norvane {

Gzip_Writer::Gzip_Writer(Atomic_File& target) : m_target(target) {
    /// zlib's: the largest window, in gzip's frame, and the memory that it takes as a rule.
    constexpr int gzip_window = MAX_WBITS + 16;
    constexpr int usual_memory = 8;
    if (::deflateInit2(&m_stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, gzip_window, usual_memory,
                       Z_DEFAULT_STRATEGY) != Z_OK)
        throw std::bad_alloc();
}

Gzip_Writer::~Gzip_Writer() {
    ::deflateEnd(&m_stream);
}

void Gzip_Writer::Add(std::string_view text) {
    Deflate(text, Z_NO_FLUSH);
}

void Gzip_Writer::Finish() {
    Deflate({}, Z_FINISH);
}

void Gzip_Writer::Deflate(std::string_view text, int flush) {
    // zlib promises not to change what it reads.
    m_stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
    m_stream.avail_in = static_cast<uInt>(text.size());
    do {
        m_stream.next_out = reinterpret_cast<Bytef*>(m_block.data());
        m_stream.avail_out = static_cast<uInt>(m_block.size());
        if (::deflate(&m_stream, flush) == Z_STREAM_ERROR)
            throw Run_Error(error_number::other, "A text could not be packed");
        m_target.Write({m_block.data(), m_block.size() - m_stream.avail_out});
    } while (m_stream.avail_out == 0);
}

void Add_To_Packed_File(const std::filesystem::path& file, std::string_view text) {
    Atomic_File target(file);
    // A packed file may consist of several, one behind the other.
    target.Write(Read_File(file));
    Gzip_Writer writer(target);
    writer.Add(text);
    writer.Finish();
    target.Commit();
}

}  // namespace norvane
