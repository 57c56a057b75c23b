#pragma once

#include <string>

namespace ostrel::test {

/// The two ends of a pseudo-terminal that changes nothing of what it gets.
class Terminal {
public:
    /// @throws std::runtime_error if there is none to be had
    explicit Terminal(unsigned short columns);
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    ~Terminal();

    /// The end that a program takes for its terminal; kept open, so that nothing is lost.
    int programsEnd() const { return m_slave; }
    int readersEnd() const { return m_master; }

    /// What was written meanwhile; it does not wait.
    std::string read() const;

private:
    int m_master;
    int m_slave;
};

} // namespace ostrel::test
