// The camera as a device: its settings and how it answers requests. No sockets, no threads.
#pragma once

#include "KxSim/SimCamera.h"
#include "MultipartForm.h"
#include "Settings.h"
#include "areas/Area.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kxsim
{

class Device
{
public:
    explicit Device(const CameraOptions& options);
    /// Tells the device where it listens, which it then reports as its own settings. As it is now, it has left the
    /// factory.
    void placeAt(const std::string& address, unsigned short port);

    struct Answer
    {
        int status = 200;
        std::string body;
        std::string fileName{}; ///< of the file that is the body, if it is one
    };
    /// Whether these credentials ("Basic ...") are those of a user.
    bool admits(std::string_view authorization) const;
    /// Answers a request target, path and query.
    Answer answer(std::string_view target);
    /// Whether the camera restarts after the latest answer; asked once.
    bool takeRestart() { return std::exchange(restarting_, false); }
    /// Answers a request target to which a file was sent; nothing stands for what is no proper form.
    Answer answerUpload(std::string_view target, const std::optional<UploadedFile>& file);

    Settings& settings() { return settings_; }
    Files& files() { return files_; }

private:
    void add(const Area& area);
    std::string perform(const Action& action, const Parameters& parameters);
    Answer answerSettings(std::string_view query);

    // Each gives the line that answers a piece of a settings query, or nothing when the camera has no answer.
    std::optional<std::string> answerPiece(std::string_view page, std::string_view piece);
    std::optional<std::string> get(std::string_view key) const;
    std::optional<std::string> set(std::string_view page, std::string_view key, std::string_view value);
    std::optional<std::string> run(std::string_view word);

    void apply(Effect effect);
    void reset(Keep keep);
    bool take(std::string_view page, std::string_view key, const std::string& value);

    Answer handOut(const Download& download, std::string_view name) const;
    std::string configuration() const;
    void configure(std::string_view configuration);
    void install(std::string_view image);

    std::string lineEnd_;
    Chip chip_;
    Settings settings_;
    Settings factory_; ///< those of a camera fresh from the factory
    bool restarting_ = false;
    std::map<std::string_view, Keep> keptWith_;
    std::set<std::string_view> readOnly_;
    std::set<std::string_view> hidden_;
    std::map<std::pair<std::string_view, std::string_view>, const SetRule*> setRules_; ///< by page and key
    std::set<std::string_view> pages_;
    std::map<std::string_view, const Command*> commands_;
    std::map<std::string_view, const Inquiry*> inquiries_;
    std::vector<const Action*> actions_;
    std::vector<const Upload*> uploads_;
    std::vector<const Download*> downloads_;
    std::map<std::string_view, const FileInquiry*> fileInquiries_;
    std::vector<void (*)(Settings&, const Files&)> refreshers_;
    Files files_;
};

} // namespace kxsim
