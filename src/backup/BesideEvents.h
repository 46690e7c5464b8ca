#pragma once

#include <functional>

namespace kestrix {

/// Runs `work` on a thread of its own and returns when it is done; what it throws is thrown here.
/// Meanwhile the windows of the program are painted, moved and resized, but keys and clicks wait:
/// they are delivered, in their order, when control is back in the event loop.
void RunBesideEvents(const std::function<void()>& work);

}  // namespace kestrix
