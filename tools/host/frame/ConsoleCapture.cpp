#include "frame/ConsoleCapture.h"

#include <iostream>
#include <mutex>
#include <streambuf>
#include <thread>
#include <utility>

namespace ostrel::host {

namespace {

/// Keeps what one thread writes, and hands on what others do. It has no buffer, so that threads do not meet in one.
class Collector final : public std::streambuf {
public:
    /// From now on the writes of this thread are kept, those of others go to `others`.
    void begin(std::streambuf* others)
    {
        const std::lock_guard lock{m_mutex};
        m_others = others;
        m_thread = std::this_thread::get_id();
        m_text.clear();
    }

    std::string end()
    {
        const std::lock_guard lock{m_mutex};
        m_thread = {};
        return std::move(m_text);
    }

protected:
    int_type overflow(int_type c) override
    {
        const char byte = traits_type::to_char_type(c);
        return xsputn(&byte, 1) == 1 ? traits_type::not_eof(c) : traits_type::eof();
    }

    std::streamsize xsputn(const char* bytes, std::streamsize count) override
    {
        std::unique_lock lock{m_mutex};
        if (m_thread == std::this_thread::get_id()) {
            m_text.append(bytes, static_cast<std::size_t>(count));
            return count;
        }
        std::streambuf* const others = m_others;
        lock.unlock();
        return others->sputn(bytes, count);
    }

private:
    std::mutex m_mutex;
    std::thread::id m_thread;
    std::streambuf* m_others = nullptr;
    std::string m_text;
};

/// Never destroyed: a thread of a bundle may be inside of it for longer than std::cout uses it.
Collector& collector()
{
    static Collector* const only = new Collector;
    return *only;
}

/// std::cout writes into the collector while this lives.
class Swap {
public:
    Swap() : m_before(std::cout.rdbuf())
    {
        collector().begin(m_before);
        // This clears the state too: what a bundle's printing did to the stream is no reason to lose the report.
        std::cout.rdbuf(&collector());
    }

    Swap(const Swap&) = delete;
    Swap& operator=(const Swap&) = delete;

    ~Swap() { std::cout.rdbuf(m_before); }

private:
    std::streambuf* m_before;
};

} // namespace

std::string printed(const std::function<void()>& print)
{
    const Swap swap;
    print();
    return collector().end();
}

} // namespace ostrel::host
