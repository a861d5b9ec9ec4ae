// Owners for what GLib and GStreamer count references of.
#pragma once

#include <gst/gst.h>

#include <memory>

namespace kxsim
{

struct Unref
{
    void operator()(gpointer object) const { g_object_unref(object); }
    void operator()(GstCaps* caps) const { gst_caps_unref(caps); }
    void operator()(GstBuffer* buffer) const { gst_buffer_unref(buffer); }
    void operator()(GstSample* sample) const { gst_sample_unref(sample); }
};

/// One reference to an object.
template <typename Object>
using Owned = std::unique_ptr<Object, Unref>;

} // namespace kxsim
