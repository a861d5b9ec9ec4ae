// A thread that runs GLib sources and tasks.
#pragma once

#include <glib.h>

#include <chrono>
#include <functional>
#include <thread>

namespace kxsim
{

/// Runs from construction to destruction.
class EventLoop
{
public:
    EventLoop();
    ~EventLoop();
    EventLoop(const EventLoop&) = delete;
    EventLoop& operator=(const EventLoop&) = delete;

    GMainContext* context() const { return context_; }
    /// Runs the task on the thread and returns when it has run. What it throws is thrown here.
    void run(std::function<void()> task);
    /// Runs the task on the thread, once, after this time or never.
    void after(std::chrono::milliseconds time, std::function<void()> task);
    /// Runs the task on the thread, once, when there is nothing else to do.
    void whenIdle(std::function<void()> task);
    /// Runs the task on the thread again and again.
    void every(std::chrono::milliseconds time, std::function<void()> task);

private:
    void add(GSource* source, int priority, std::function<void()> task, bool again = false);

    GMainContext* const context_;
    GMainLoop* const loop_;
    std::thread thread_;
};

} // namespace kxsim
