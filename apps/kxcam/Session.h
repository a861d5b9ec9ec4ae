// The SDK's life and a logged-in camera.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Area.h"

namespace kxcam
{

/// Which camera, and as whom.
struct Target
{
    std::string host;
    int port = 80;
    std::string user = "admin";

    /// "127.0.0.1:8080"
    std::string address() const { return host + ":" + std::to_string(port); }

    /// How to call kxcam for this camera: "kxcam --host 127.0.0.1 --port 8080".
    std::string commandLine() const;
};

/// The SDK, started as long as this lives.
class Sdk
{
public:
    Sdk();
    ~Sdk();
    Sdk(const Sdk&) = delete;
    Sdk& operator=(const Sdk&) = delete;
};

/// The longest password that can be logged in with; the SDK would cut it without a word.
inline constexpr std::size_t longestPassword = 30;

/// A login that ends with this object. Failing calls throw a Failure.
class Session
{
public:
    explicit Session(Target target);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    long userId() const { return userId_; }

    /// Goes on with the password that the camera has from now on.
    void logInWith(const std::string& password);

    /// Reads an area, and finds out what of it the camera did not tell. Logs in again where a set of the
    /// network area has ended the session.
    Record read(const Area& area);
    /// Reads an area that is made of streams.
    std::vector<StreamRecord> readStreams(const Area& area);
    void write(const Area& area, Record record);

private:
    void login();
    void get(const Area& area, Record& record);
    std::optional<Record> tryRead(const Area& area);

    Target target_;
    std::string password_; // before the SDK, whose threads would take a Ctrl-C away from the prompt
    Sdk sdk_;
    long userId_ = -1;
};

} // namespace kxcam
