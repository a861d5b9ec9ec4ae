// Three ways to put the same query to a camera, over connections made for it: the SDK's, the least that can
// be done, and what an application without the SDK would pick. Each is used by one thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <curl/curl.h>
#include <netdb.h>

#include "Cameras.h"
#include "Core/UserInfo.h"

inline constexpr std::size_t replySize = 1024;

/// The request channel of the SDK.
class SdkClient
{
public:
    explicit SdkClient(const Endpoint& camera);

    bool request();
    std::string_view reply() const { return reply_; }

private:
    UserInfo session_;
    char reply_[replySize] = {};
};

/// The floor: blocking sockets without a time limit, one resolution, a request composed beforehand and a
/// reply that nobody looks at. Connects twice, as the SDK does for its probe, and moves the same bytes.
class FloorClient
{
public:
    explicit FloorClient(const Endpoint& camera);

    bool request();
    std::string_view reply() const { return reply_; }

private:
    std::string host_;
    std::string service_;
    std::string request_;
    char reply_[replySize] = {};
};

/// libcurl's easy interface, the handle kept and the connection not.
class CurlClient
{
public:
    explicit CurlClient(const Endpoint& camera);
    ~CurlClient();
    CurlClient(const CurlClient&) = delete;
    CurlClient& operator=(const CurlClient&) = delete;

    bool request();
    std::string_view reply() const { return {reply_, used_}; }

private:
    static std::size_t store(const char* bytes, std::size_t size, std::size_t count, void* client);

    CURL* handle_;
    std::size_t used_ = 0;
    char reply_[replySize] = {};
};

/// Throws std::runtime_error unless all three get the same reply from a camera and the first two send it the
/// same request: a comparison of clients that do different things would be worth nothing.
void requireSameWork();
