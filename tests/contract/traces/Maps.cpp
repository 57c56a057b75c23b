#include "contract/traces/RandomValue.h"
#include "contract/traces/Subjects.h"

#include <vector>

namespace contract {

using namespace cppmicroservices;

namespace {

class Maps {
public:
    Maps(Choices& choices, Trace& trace) : m_choices(choices), m_trace(trace)
    {
        for (int i = 0; i < 4; ++i) {
            m_maps.push_back(randomMap(choices, 4, 2));
            m_trace.line(named(m_maps.size() - 1) + " is " + described(m_maps.back()));
        }
    }

    void step();

private:
    static std::string named(std::size_t at) { return "m" + std::to_string(at); }
    std::string compoundKey();
    void look(std::size_t at, std::string const& key);
    void change(std::size_t at, std::string const& key);
    void whole(std::size_t at);

    Choices& m_choices;
    Trace& m_trace;
    std::vector<AnyMap> m_maps;
};

std::string Maps::compoundKey()
{
    static std::vector<std::string> const parts{"a", "b", "c", "A", "key", "deep", "0", "1", "2", "9", "", "1x", "d"};
    std::string result = m_choices.chance(50) ? randomKey(m_choices) : m_choices.of(parts);
    for (auto left = m_choices.below(3); left > 0; --left) {
        result += "." + m_choices.of(parts);
    }
    return result;
}

void Maps::look(std::size_t at, std::string const& key)
{
    auto& map = m_maps[at];
    auto const& constant = m_maps[at];
    switch (m_choices.below(6)) {
    case 0:
        m_trace.call(named(at) + ".at(" + key + ")", [&] { return described(map.at(key)); });
        break;
    case 1:
        m_trace.call("const " + named(at) + ".at(" + key + ")", [&] { return described(constant.at(key)); });
        break;
    case 2: {
        auto const found = map.find(key);
        m_trace.line(named(at) + ".find(" + key +
                     ") = " + (found == map.cend() ? "end" : found->first + "=" + described((*found).second)) + ", " +
                     std::to_string(map.count(key)));
        break;
    }
    case 3: {
        auto const path = compoundKey();
        m_trace.call(named(at) + ".AtCompoundKey(" + path + ", 1)",
                     [&] { return described(map.AtCompoundKey(path, Any(1))); });
        break;
    }
    default: {
        auto const path = compoundKey();
        m_trace.call(named(at) + ".AtCompoundKey(" + path + ")", [&] { return described(map.AtCompoundKey(path)); });
        break;
    }
    }
}

void Maps::change(std::size_t at, std::string const& key)
{
    auto& map = m_maps[at];
    switch (m_choices.below(7)) {
    case 0: {
        auto const value = randomValue(m_choices);
        auto const [position, added] = map.insert({key, value});
        m_trace.line(named(at) + ".insert " + position->first + "=" + described(position->second) + " " +
                     std::to_string(added));
        break;
    }
    case 1: {
        auto const value = randomValue(m_choices);
        auto const [position, added] = map.emplace(key, value);
        m_trace.line(named(at) + ".emplace " + position->first + "=" + described(position->second) + " " +
                     std::to_string(added));
        break;
    }
    case 2:
        m_trace.line(named(at) + ".erase(" + key + ") = " + std::to_string(map.erase(key)));
        break;
    case 3:
        map[key] = randomMap(m_choices, 4, 2);
        break;
    case 4: {
        std::vector<Any> list;
        for (auto left = m_choices.below(4); left > 0; --left) {
            list.push_back(randomValue(m_choices));
        }
        map[key] = list;
        break;
    }
    default:
        map[std::string(key)] = randomValue(m_choices);
        break;
    }
    m_trace.line(named(at) + " is " + described(map));
}

void Maps::whole(std::size_t at)
{
    auto const other = m_choices.below(m_maps.size());
    switch (m_choices.below(8)) {
    case 0:
        m_maps[at] = m_maps[other];
        m_trace.line(named(at) + " = " + named(other));
        break;
    case 1:
        m_maps[at] = randomMap(m_choices, 4, 2);
        m_trace.line(named(at) + " is " + described(m_maps[at]));
        break;
    case 2: {
        AnyMap copy(m_maps[at]);
        AnyMap const moved(std::move(copy));
        m_trace.line(named(at) + " copied and moved is " + described(moved));
        break;
    }
    case 3:
        if (m_choices.chance(10)) {
            m_maps[at].clear();
        }
        m_trace.line(named(at) + " has " + std::to_string(m_maps[at].size()) +
                     (m_maps[at].empty() ? " empty" : " filled") + " type " + std::to_string(m_maps[at].GetType()));
        break;
    case 4: {
        std::size_t entries = 0;
        for (auto i = m_maps[at].begin(); i != m_maps[at].end(); i++) {
            ++entries;
            if (!i->second.Empty() && m_choices.chance(10)) {
                (*i).second = 7;
            }
        }
        m_trace.line(named(at) + " iterated " + std::to_string(entries));
        break;
    }
    case 5:
        m_trace.call(named(at) + ".ToJSON", [&] { return Any(m_maps[at]).ToJSON(); });
        break;
    case 6:
        m_trace.call(named(at) + ".ToString", [&] { return Any(m_maps[at]).ToString(); });
        break;
    default:
        if (!holdsEmpty(m_maps[at]) && !holdsEmpty(m_maps[other])) {
            m_trace.line(named(at) + " == " + named(other) + " " + std::to_string(m_maps[at] == m_maps[other]) +
                         std::to_string(m_maps[at] != m_maps[other]));
        }
        break;
    }
}

void Maps::step()
{
    auto const at = m_choices.below(m_maps.size());
    auto const key = randomKey(m_choices);
    switch (m_choices.below(3)) {
    case 0:
        look(at, key);
        break;
    case 1:
        change(at, key);
        break;
    default:
        whole(at);
        break;
    }
}

} // namespace

void traceMaps(Choices& choices, Trace& trace, std::size_t steps)
{
    Maps maps(choices, trace);
    for (; steps > 0; --steps) {
        maps.step();
    }
}

} // namespace contract
