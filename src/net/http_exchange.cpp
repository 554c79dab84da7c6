#include "net/http_exchange.h"

#include <curl/curl.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "common/text.h"
#include "net/http_client.h"
#include "net/http_failure.h"

namespace norvane {

using std::chrono::microseconds;
using std::chrono::milliseconds;

namespace {

/// The program's file name without extension, by which it presents itself to servers.
std::string Agent_Name() {
    std::error_code failure;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", failure);
    return failure ? Lower(product_name) : program.stem().string();
}

curl_off_t Figure(CURL* easy, CURLINFO which, curl_off_t otherwise = 0) {
    curl_off_t value = otherwise;
    curl_easy_getinfo(easy, which, &value);
    return value;
}

}  // namespace

std::size_t Http_Exchange::Take_Bytes(const char* bytes, std::size_t one, std::size_t count,
                                      void* exchange) {
    auto& own = *static_cast<Http_Exchange*>(exchange);
    const std::size_t taken = std::min(one * count, own.m_most_bytes - own.m_answer.size());
    own.m_answer.append(bytes, taken);
    return taken;
}

Http_Exchange::Http_Exchange(const Http_Hop& hop, const Content& content,
                             const Http_Options& options, milliseconds time_left)
    : m_easy(curl_easy_init()), m_verb(hop.verb), m_most_bytes(options.most_bytes) {
    if (m_easy == nullptr)
        throw Http_Error(internet_open);
    // A header without a value takes away what the library would send by itself.
    for (const char* header : {"Accept:", "Expect:", "Pragma: no-cache"})
        Add_Header(header);
    if (curl_easy_setopt(m_easy, CURLOPT_URL, hop.address.c_str()) != CURLE_OK ||
        curl_easy_setopt(m_easy, CURLOPT_PROTOCOLS_STR, "http,https") != CURLE_OK)
        throw Http_Error(http_open_request);
    if (hop.verb == Http_Verb::post) {
        for (const std::string& header : content.headers)
            Add_Header(header.c_str());
        curl_easy_setopt(m_easy, CURLOPT_POST, 1L);
        curl_easy_setopt(m_easy, CURLOPT_CUSTOMREQUEST, content.method.c_str());
        curl_easy_setopt(m_easy, CURLOPT_POSTFIELDSIZE_LARGE,
                         static_cast<curl_off_t>(content.body.size()));
        curl_easy_setopt(m_easy, CURLOPT_POSTFIELDS, content.body.c_str());
    }
    curl_easy_setopt(m_easy, CURLOPT_HTTPHEADER, m_headers);
    curl_easy_setopt(m_easy, CURLOPT_USERAGENT, Agent_Name().c_str());
    curl_easy_setopt(m_easy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    curl_easy_setopt(m_easy, CURLOPT_WRITEFUNCTION, &Take_Bytes);
    curl_easy_setopt(m_easy, CURLOPT_WRITEDATA, this);
    Set_Limits(options, time_left);
}

Http_Exchange::~Http_Exchange() {
    curl_easy_cleanup(m_easy);
    curl_slist_free_all(m_headers);
}

void Http_Exchange::Add_Header(const char* header) {
    curl_slist* longer = curl_slist_append(m_headers, header);
    if (longer == nullptr)
        throw Http_Error(http_open_request);
    m_headers = longer;
}

void Http_Exchange::Set_Limits(const Http_Options& options, milliseconds time_left) {
    curl_easy_setopt(m_easy, CURLOPT_SSL_VERIFYPEER, 1L);
    curl_easy_setopt(m_easy, CURLOPT_SSL_VERIFYHOST, 2L);
    if (!options.trusted_certificates.empty())
        curl_easy_setopt(m_easy, CURLOPT_CAINFO, options.trusted_certificates.c_str());
    curl_easy_setopt(m_easy, CURLOPT_CONNECTTIMEOUT_MS,
                     static_cast<long>(options.connect_within.count()));
    curl_easy_setopt(m_easy, CURLOPT_TIMEOUT_MS, static_cast<long>(time_left.count()));
    // Nothing is kept for a next request: each one connects anew.
    curl_easy_setopt(m_easy, CURLOPT_FORBID_REUSE, 1L);
    // A name that is still being looked up must not hold up the end of the request.
    curl_easy_setopt(m_easy, CURLOPT_QUICK_EXIT, 1L);
}

long Http_Exchange::Status() const {
    long status = 0;
    curl_easy_getinfo(m_easy, CURLINFO_RESPONSE_CODE, &status);
    return status;
}

bool Http_Exchange::Was_Connected() const {
    return Figure(m_easy, CURLINFO_PRETRANSFER_TIME_T) != 0;
}

std::size_t Http_Exchange::Body_Bytes_Sent() const {
    return static_cast<std::size_t>(Figure(m_easy, CURLINFO_SIZE_UPLOAD_T));
}

std::string Http_Exchange::Location() const {
    char* location = nullptr;
    curl_easy_getinfo(m_easy, CURLINFO_REDIRECT_URL, &location);
    return location == nullptr ? std::string() : location;
}

std::string Http_Exchange::Header(const char* name) const {
    curl_header* header = nullptr;
    const bool is_there = curl_easy_header(m_easy, name, 0, CURLH_HEADER, -1, &header) == CURLHE_OK;
    return is_there ? header->value : std::string();
}

milliseconds Http_Exchange::Duration() const {
    return std::chrono::duration_cast<milliseconds>(
        microseconds(Figure(m_easy, CURLINFO_TOTAL_TIME_T)));
}

Http_Ending Http_Exchange::Ending(int result) const {
    Http_Ending ending{result, m_verb, !m_answer.empty()};
    curl_easy_getinfo(m_easy, CURLINFO_OS_ERRNO, &ending.system_error);
    ending.states_length = Figure(m_easy, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, -1) >= 0 ||
                           !Header("Transfer-Encoding").empty();
    return ending;
}

}  // namespace norvane
