#pragma once

namespace ostrel::test {

enum class Urgency { urgent, patient };

/// Puts the calling thread on the first processor, and a patient one last in the queue there.
///
/// When a patient thread lets go of a lock for which an urgent one waits, the urgent one goes on at once. Thus a test
/// sees whether a lock is let go for a moment. It is a matter of scheduling: a system that refuses makes it less
/// likely. A thread cannot be made urgent again, so it must be one of the test's own.
void meetOnFirstProcessor(Urgency urgency);

} // namespace ostrel::test
