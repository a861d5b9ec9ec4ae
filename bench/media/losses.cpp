// Whether all frames arrive: each has its number on it.
#include "Client.h"

#include <cstdio>
#include <list>
#include <optional>
#include <stdexcept>
#include <thread>

#include <KxSim/Streaming.h>

#include "LiveView.h"

namespace
{

/// One camera whose frames are checked.
class Checked
{
public:
    explicit Checked(const Endpoint& camera)
        : view_(camera, [this](const Picture& picture) { check(picture); })
    {
        view_.open();
    }

    void stop() { view_.stop(); }
    unsigned frames() const { return frames_; }
    unsigned lost() const { return lost_; }

private:
    void check(const Picture& picture)
    {
        const auto number = kxsim::frameNumberOf(picture.pixels, picture.width, picture.height);
        if (number != next_)
            ++lost_;
        if (number)
            next_ = (*number + 1) % kxsim::framesPerLoop;
        ++frames_;
    }

    std::optional<unsigned> next_ = 0; // a stream begins with the first frame
    unsigned frames_ = 0;
    unsigned lost_ = 0;
    LiveView view_;
};

} // namespace

void countLosses(unsigned seconds, const Endpoints& cameras)
{
    std::list<Checked> streams;
    for (const Endpoint& camera : cameras)
        streams.emplace_back(camera);
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
    unsigned frames = 0;
    unsigned lost = 0;
    for (Checked& stream : streams) {
        stream.stop();
        if (stream.frames() < 25 * (seconds - 1))
            throw std::runtime_error("a camera's frames come too slowly to tell");
        frames += stream.frames();
        lost += stream.lost();
    }
    std::fprintf(stderr, "frames/watched %u\nframes/lost %u\n", frames, lost);
}
