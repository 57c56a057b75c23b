#pragma once

#include <array>
#include <ostream>
#include <streambuf>

namespace ostrel::host {

/// Makes writing to a standard stream safe whatever the caller of the program did to it.
///
/// A closed pipe becomes a failed write instead of the end of the process, so that bundles are still stopped in order.
/// A standard stream that is closed at start is reserved, so that no file that a bundle opens takes its number and
/// receives the report.
void prepareStandardStreams();

/// Lets what is written to standard output from now on, by whatever means, go to standard error: bundles may print, and
/// the result must not be mixed with that. A ResultStream made before goes on writing to the real one.
void divertStandardOutput();

/// The standard output that the program was given, in a descriptor of its own.
class ResultStream final : public std::ostream {
public:
    /// To be made after prepareStandardStreams() and before divertStandardOutput().
    ResultStream();

    /// Whether a person reads it.
    bool isTerminal() const { return m_isTerminal; }

    /// Of the write that failed first; 0 as long as none did.
    int error() const { return m_buffer.error(); }

private:
    class Buffer final : public std::streambuf {
    public:
        explicit Buffer(int descriptor);
        int error() const { return m_error; }

    protected:
        int_type overflow(int_type c) override;
        int sync() override;

    private:
        std::array<char, 4096> m_bytes;
        int m_descriptor;
        int m_error = 0;
    };

    Buffer m_buffer;
    bool m_isTerminal;
};

} // namespace ostrel::host
