#include "Clients.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include <sys/socket.h>
#include <unistd.h>

#include "NetManager/RequestChannel.h"

namespace
{

constexpr char query[] =
    "&paratest=ftpip&paratest=ftpipport&paratest=ftpuser&paratest=ftppath&paratest=ftppassword";

std::string target()
{
    return std::string("/vb.htm?language=ie") + query;
}

bool resolve(const std::string& host, const std::string& service, sockaddr_storage& address, socklen_t& size)
{
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (getaddrinfo(host.c_str(), service.c_str(), &hints, &found) != 0)
        return false;
    size = found->ai_addrlen;
    std::memcpy(&address, found->ai_addr, size);
    freeaddrinfo(found);
    return true;
}

int connectTo(const sockaddr_storage& address, socklen_t size)
{
    const int connection = ::socket(AF_INET, SOCK_STREAM, 0);
    if (connection >= 0 && ::connect(connection, reinterpret_cast<const sockaddr*>(&address), size) == 0)
        return connection;
    ::close(connection);
    return -1;
}

bool exchangeBytes(int connection, const std::string& request, char (&reply)[replySize])
{
    if (::send(connection, request.data(), request.size(), MSG_NOSIGNAL) !=
        static_cast<ssize_t>(request.size()))
        return false;
    std::size_t total = 0;
    while (total < replySize - 1) { // the terminator stays
        const ssize_t count = ::recv(connection, reply + total, replySize - 1 - total, 0);
        if (count <= 0)
            return count == 0 && total > 0;
        total += static_cast<std::size_t>(count);
    }
    return true;
}

void require(bool condition, const char* complaint)
{
    if (!condition)
        throw std::runtime_error(complaint);
}

} // namespace

SdkClient::SdkClient(const Endpoint& camera)
{
    std::strcpy(session_.host, camera.host.c_str());
    session_.port = camera.port;
    std::strcpy(session_.user, "admin");
    std::strcpy(session_.password, "admin");
}

bool SdkClient::request()
{
    return DoRequest(&session_, query, reply_, sizeof reply_, 0) == 0;
}

FloorClient::FloorClient(const Endpoint& camera)
    : host_(camera.host), service_(std::to_string(camera.port)),
      request_("GET " + target() + " HTTP/1.1\r\nHost: " + host_ + ":" + service_ +
               "\r\nConnection: Keep-Alive\r\nAuthorization: Basic YWRtaW46YWRtaW4=\r\n\r\n")
{
}

bool FloorClient::request()
{
    sockaddr_storage address;
    socklen_t size = 0;
    if (!resolve(host_, service_, address, size))
        return false;
    const int probe = connectTo(address, size);
    if (probe < 0)
        return false;
    ::close(probe);
    const int connection = connectTo(address, size);
    if (connection < 0)
        return false;
    const bool exchanged = exchangeBytes(connection, request_, reply_);
    ::close(connection);
    return exchanged;
}

CurlClient::CurlClient(const Endpoint& camera) : handle_(curl_easy_init())
{
    const std::string url = "http://" + camera.host + ":" + std::to_string(camera.port) + target();
    curl_easy_setopt(handle_, CURLOPT_URL, url.c_str());
    curl_easy_setopt(handle_, CURLOPT_HTTPAUTH, CURLAUTH_BASIC);
    curl_easy_setopt(handle_, CURLOPT_USERPWD, "admin:admin");
    curl_easy_setopt(handle_, CURLOPT_PROXY, ""); // whatever the environment says
    curl_easy_setopt(handle_, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(handle_, CURLOPT_HEADER, 1L); // a raw reply, as the others get it
    curl_easy_setopt(handle_, CURLOPT_FRESH_CONNECT, 1L);
    curl_easy_setopt(handle_, CURLOPT_FORBID_REUSE, 1L);
    curl_easy_setopt(handle_, CURLOPT_WRITEFUNCTION, &CurlClient::store);
    curl_easy_setopt(handle_, CURLOPT_WRITEDATA, this);
}

CurlClient::~CurlClient()
{
    curl_easy_cleanup(handle_);
}

bool CurlClient::request()
{
    used_ = 0;
    return curl_easy_perform(handle_) == CURLE_OK;
}

std::size_t CurlClient::store(const char* bytes, std::size_t size, std::size_t count, void* client)
{
    auto& self = *static_cast<CurlClient*>(client);
    const std::size_t length = std::min(size * count, replySize - self.used_);
    std::memcpy(self.reply_ + self.used_, bytes, length);
    self.used_ += length;
    return size * count;
}

void requireSameWork()
{
    const kxsim::SimCamera camera;
    const Endpoint endpoint{camera.host(), camera.port()};
    SdkClient sdk(endpoint);
    FloorClient floor(endpoint);
    CurlClient curl(endpoint);
    require(sdk.request() && floor.request() && curl.request(), "a client fails");
    require(sdk.reply().find("OK ftppassword=") != std::string_view::npos, "the reply holds no values");
    require(sdk.reply() == floor.reply() && sdk.reply() == curl.reply(), "the clients get different replies");

    const auto requests = camera.requests();
    require(requests[0].text == requests[1].text, "SDK and floor send different requests");
    require(requests[0].target == requests[2].target, "SDK and libcurl ask for different targets");
}
