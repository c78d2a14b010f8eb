// How the main thread waits without holding up the threads that send messages to its windows.
#pragma once

namespace vantro {

// Lets the calling thread's window procedures answer the messages that other threads have sent, waiting up to a
// millisecond for one. Posted messages and timers stay in the queue.
void ServeSentMessages();

}  // namespace vantro
