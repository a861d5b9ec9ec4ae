#include "EventLoop.h"

#include "HandOver.h"

#include <future>
#include <utility>

namespace kxsim
{
namespace
{

/// A task on its way to the thread.
struct Errand
{
    std::function<void()> task;
    bool again;
};

gboolean perform(gpointer data)
{
    HandOver::taken();
    const auto* const errand = static_cast<Errand*>(data);
    errand->task();
    return errand->again ? G_SOURCE_CONTINUE : G_SOURCE_REMOVE;
}

void forget(gpointer data)
{
    delete static_cast<Errand*>(data);
}

} // namespace

EventLoop::EventLoop() : context_(g_main_context_new()), loop_(g_main_loop_new(context_, FALSE))
{
    thread_ = std::thread([this] {
        g_main_context_push_thread_default(context_);
        g_main_loop_run(loop_);
        g_main_context_pop_thread_default(context_);
    });
}

// Quitting is a task too: before the loop runs it would be lost.
EventLoop::~EventLoop()
{
    after(std::chrono::milliseconds(0), [this] { g_main_loop_quit(loop_); });
    thread_.join();
    g_main_loop_unref(loop_);
    g_main_context_unref(context_);
}

void EventLoop::run(std::function<void()> task)
{
    if (std::this_thread::get_id() == thread_.get_id())
        return task();
    std::packaged_task<void()> work(std::move(task));
    add(g_idle_source_new(), G_PRIORITY_DEFAULT, [&work] { work(); });
    work.get_future().get();
}

void EventLoop::after(std::chrono::milliseconds time, std::function<void()> task)
{
    add(g_timeout_source_new(static_cast<guint>(time.count())), G_PRIORITY_DEFAULT, std::move(task));
}

void EventLoop::whenIdle(std::function<void()> task)
{
    add(g_idle_source_new(), G_PRIORITY_LOW, std::move(task));
}

void EventLoop::every(std::chrono::milliseconds time, std::function<void()> task)
{
    add(g_timeout_source_new(static_cast<guint>(time.count())), G_PRIORITY_DEFAULT, std::move(task), true);
}

void EventLoop::add(GSource* source, int priority, std::function<void()> task, bool again)
{
    auto* const errand = new Errand{std::move(task), again};
    HandOver::given();
    g_source_set_priority(source, priority);
    g_source_set_callback(source, perform, errand, forget);
    g_source_attach(source, context_);
    g_source_unref(source);
}

} // namespace kxsim
