#pragma once

namespace zepkit10 {

/// Lets the calling thread handle the messages that wait in its queue, up to a thousand of them,
/// and returns. A request to quit is left for the thread's own message loop.
void ProcessMessages();

}  // namespace zepkit10
