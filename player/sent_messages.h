// A wait of the main thread that does not block the threads that send messages to its windows.
#pragma once

namespace vantro {

// Waits up to a millisecond for messages that other threads send, and lets the calling thread's window procedures
// handle them. Posted messages and timers stay in the queue.
void ServeSentMessages();

}  // namespace vantro
