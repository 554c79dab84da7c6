#include "net/http_transfers.h"

#include <curl/curl.h>

#include "net/http_failure.h"

namespace norvane {

void Http_Transfers::Open() {
    if (m_multi != nullptr)
        return;
    static const CURLcode ready = curl_global_init(CURL_GLOBAL_DEFAULT);
    m_multi = ready == CURLE_OK ? curl_multi_init() : nullptr;
    if (m_multi == nullptr)
        throw Http_Error(internet_open);
}

Http_Transfers::~Http_Transfers() {
    curl_multi_cleanup(m_multi);
}

bool Http_Transfers::Add(void* handle) {
    if (curl_multi_add_handle(m_multi, handle) != CURLM_OK)
        return false;
    m_results.emplace(handle, std::nullopt);
    return true;
}

void Http_Transfers::Remove(void* handle) {
    curl_multi_remove_handle(m_multi, handle);
    m_results.erase(handle);
}

void Http_Transfers::Drive() {
    int running = 0;
    const bool works = curl_multi_perform(m_multi, &running) == CURLM_OK;
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(m_multi, &left)) {
        if (message->msg == CURLMSG_DONE)
            m_results[message->easy_handle] = message->data.result;
    }
    if (works)
        return;
    for (auto& [handle, result] : m_results) {
        if (!result)
            result = CURLE_FAILED_INIT;
    }
}

std::optional<int> Http_Transfers::Result(void* handle) const {
    const auto found = m_results.find(handle);
    return found == m_results.end() ? std::nullopt : found->second;
}

void Http_Transfers::Wait(int at_most_ms) {
    curl_multi_poll(m_multi, nullptr, 0, at_most_ms, nullptr);
}

}  // namespace norvane
