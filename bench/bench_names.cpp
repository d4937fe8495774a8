// What names cost: reading one beside cutting its text to pieces, and finding one among ten thousand beside
// a walk through all of them and beside one search for its text.

#include "measure.h"

#include "objectmodel/objectmap.h"

#include <QRandomGenerator>

namespace {

using namespace Bench;
using namespace Vorkel;

constexpr int Rounds = 31;
constexpr int Reads = 20'000;
constexpr int Searches = 500;
constexpr int Walks = 20;
constexpr int Entries = 10'000;
constexpr double ReadLimitMicroseconds = 2;
constexpr double WalkLimit = 100;

qsizetype sink = 0;

template <typename Work>
double microseconds(int times, const Work &work)
{
    const auto all = [&] {
        for (int i = 0; i < times; ++i)
            sink += work(i);
    };
    return seconds(all) * 1e6 / times;
}

/// The least that reading takes: looking at every character.
qsizetype scan(QStringView text)
{
    qsizetype pieces = 0;
    for (qsizetype start = 1, end; (end = text.indexOf(u'\'', start)) >= 0; start = end + 1)
        pieces += text.sliced(start, end - start).size();
    return pieces;
}

/// The same, and the pieces behind an "=" and the keys in front of it are kept, as they stand.
qsizetype split(QStringView text)
{
    QMap<QString, QString> pieces;
    for (qsizetype key = 1; key < text.size() - 1;) {
        const qsizetype quote = text.indexOf(u'\'', key);
        const qsizetype end = text.indexOf(u'\'', quote + 1);
        pieces.insert(text.sliced(key, quote - 1 - key).toString(),
                      text.sliced(quote + 1, end - quote - 1).toString());
        key = end + 2;
    }
    return pieces.size();
}

void measureReading()
{
    const QString text = QStringLiteral(
            "{name='okButton' text='Save as...' type='QPushButton' visible='1' window=':Main'}");
    QString error;
    const std::vector<Samples> samples = alternate(
            Rounds,
            { [&] { return microseconds(Reads, [&](int) { return scan(text); }); },
              [&] { return microseconds(Reads, [&](int) { return split(text); }); },
              [&] {
                  return microseconds(Reads, [&](int) { return parseNameByProperties(text, &error).size(); });
              },
              [&] {
                  return microseconds(Reads, [&](int) {
                      return ObjectName(ObjectName(text).properties()).qualifiedName().size();
                  });
              } });
    Table table({ "A name of five properties", "us", "x scan", "x split" });
    const char *const titles[] = { "(a) scan", "(b) + keep the pieces", "parse", "parse, canonical text" };
    for (std::size_t i = 0; i < samples.size(); ++i)
        table.add({ titles[i], number(samples[i].median(), 3), number(samples[i].ratioTo(samples[0]), 2),
                    number(samples[i].ratioTo(samples[1]), 2) });
    table.print();
    printTarget("parse (us)", samples[2].median(), ReadLimitMicroseconds, 2);
}

QString nameOf(int number)
{
    return QStringLiteral("{name='button%1' text='Save as...' type='QPushButton' visible='1' "
                          "window=':Main_QWidget'}")
            .arg(number);
}

/// A table of names in which one search compares texts, and a walk compares names.
class Table10000
{
public:
    Table10000()
    {
        m_map.add(ObjectName(QStringLiteral("{title='Main' type='QWidget'}")),
                  QStringLiteral(":Main_QWidget"));
        for (int i = 0; i < Entries; ++i)
            m_map.add(ObjectName(nameOf(i)), QStringLiteral(":Main.button%1_QPushButton").arg(i));
        for (auto it = m_map.symbolicNames().cbegin(); it != m_map.symbolicNames().cend(); ++it)
            m_symbols.insert(it.value(), it.key());
    }

    [[nodiscard]] QString symbolicName(const QString &name) { return m_map.symbolicName(name, false); }
    [[nodiscard]] QString printableName(const QString &name) { return m_map.printableName(name); }
    [[nodiscard]] QString sameText(const QString &name) const { return m_symbols.value(ObjectName(name)); }
    [[nodiscard]] QString walk(const QString &name)
    {
        const QString fixed = m_map.fixedName(name, false);
        const ObjectName sought(fixed);
        const ObjectName old(m_map.convertToOldName(fixed));
        for (auto it = m_symbols.cbegin(); it != m_symbols.cend(); ++it) {
            if (it.key() == sought || it.key() == old)
                return *it;
        }
        return fixed;
    }

private:
    ObjectMap m_map = ObjectMap(false);
    QMap<ObjectName, QString> m_symbols;
};

/// `first` to `last` are the numbers of the names that are sought.
void measureSearches(Table10000 *names, const char *what, int first, int last)
{
    QRandomGenerator random(1);
    QStringList sought;
    for (int i = 0; i < Searches; ++i)
        sought.append(nameOf(random.bounded(first, last)));
    const auto slice = [&](int times, QString (Table10000::*search)(const QString &)) {
        return [=, &sought] {
            return microseconds(times, [&](int i) { return (names->*search)(sought[i]).size(); });
        };
    };
    const std::vector<Samples> samples = alternate(
            Rounds,
            { [&] {
                 return microseconds(Searches, [&](int i) { return names->sameText(sought[i]).size(); });
             },
              slice(Walks, &Table10000::walk), slice(Searches, &Table10000::symbolicName),
              slice(Searches, &Table10000::printableName) });
    const std::string title = std::string("Among ") + std::to_string(Entries) + ", " + what;
    Table table({ title, "us", "x text", "walk/this" });
    const char *const titles[] = { "(a) find the same text", "walk", "symbolicName", "printableName" };
    for (std::size_t i = 0; i < samples.size(); ++i)
        table.add({ titles[i], number(samples[i].median(), 3), number(samples[i].ratioTo(samples[0]), 2),
                    number(samples[1].ratioTo(samples[i]), 1) });
    table.print();
    printTarget("walk/symbolicName", samples[1].ratioTo(samples[2]), WalkLimit, 0, true);
    printTarget("walk/printableName", samples[1].ratioTo(samples[3]), WalkLimit, 0, true);
}

} // namespace

int main()
{
    pinTo(cores().back());
    measureReading();
    Table10000 names;
    measureSearches(&names, "there", 0, Entries);
    measureSearches(&names, "not there", Entries, 2 * Entries);
    return sink == 0;
}
