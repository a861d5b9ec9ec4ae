// A live view of a camera.
#pragma once

#include <string>

#include <KxIpcSDK/KxMedia.h>

#include "Failure.h"
#include "Session.h"

namespace kxcam
{

/// How many seconds a first picture may take; cameras send a whole one every now and then only.
inline constexpr double longestWait = 15;

/// Runs as long as this lives. Failing calls throw a Failure.
class LiveView
{
public:
    /// @param stream    "main" or "sub"
    /// @param callback  receives the decoded frames; null: nothing is decoded
    LiveView(const Session& session, const Target& target, const std::string& stream,
             fLiveDataCallBack callback = nullptr, void* user = nullptr);
    ~LiveView();
    LiveView(const LiveView&) = delete;
    LiveView& operator=(const LiveView&) = delete;

    /// How the stream does.
    KxLiveStatus status() const;

    /// A Failure when, by this status, the stream broke off and is not back.
    void requireSending(const KxLiveStatus& status) const;

    /// The failure of a stream that brought no picture.
    Failure nothingCame() const;

private:
    long userId_;
    std::string name_; // "the main stream of 127.0.0.1:8080"
};

} // namespace kxcam
