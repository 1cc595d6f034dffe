// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Git/GitMemory.h"

#include "Platform/FileTree.h"

#include <QDate>
#include <QFile>

#include <algorithm>
#include <array>
#include <charconv>
#include <ctime>
#include <utility>

namespace velquarin {

using namespace std::chrono_literals;

namespace {

constexpr auto longestMemory = 24h;

// A refresh asks for two: of the week and of the years.
constexpr std::size_t mostLogs = 2;

// No edge moves back so far within a day, even if the user travels around the world.
constexpr std::int64_t slack = std::chrono::seconds(72h).count();

ConfigPlaces placesIn(const QProcessEnvironment &environment)
{
    const auto home = environment.value(QStringLiteral("HOME"));
    const auto xdg = environment.value(QStringLiteral("XDG_CONFIG_HOME"));
    return {QFile::encodeName(home).toStdString(),
            QFile::encodeName(xdg.isEmpty() ? home + QStringLiteral("/.config") : xdg).toStdString()};
}

// The moment that git takes a date for: that day at the present time of day, as libc has it with the present summer time.
// Source: mktime(3); git-log(1), "--since"
std::optional<std::int64_t> momentAt(const QString &date, std::time_t now)
{
    const auto day = QDate::fromString(date, Qt::ISODate);
    // Others mean something else to git.
    if (!day.isValid() || day.year() < 1971 || day.year() > 2099)
        return std::nullopt;
    std::tm local = {};
    localtime_r(&now, &local);
    local.tm_year = day.year() - 1900;
    local.tm_mon = day.month() - 1;
    local.tm_mday = day.day();
    return std::mktime(&local);
}

// The remote's head cannot be told where there is none, nor a setting: then git fails as well.
bool isAnswer(const QString &command, int exitStatus)
{
    const bool mayFail = command == QLatin1String("symbolic-ref") || command == QLatin1String("config");
    return mayFail ? exitStatus >= 0 : exitStatus == 0;
}

// The times at the beginning of each line, oldest first; nothing where one is beyond what we keep.
std::optional<std::vector<std::uint32_t>> timesIn(const QByteArray &list)
{
    std::vector<std::uint32_t> times;
    for (qsizetype begin = 0; begin < list.size(); begin = list.indexOf('\n', begin) + 1) {
        std::uint32_t time = 0;
        const auto [rest, error] = std::from_chars(list.constData() + begin, list.constData() + list.size(), time);
        if (error != std::errc() || list.indexOf('\n', begin) < 0)
            return std::nullopt;
        times.push_back(time);
    }
    std::ranges::sort(times);
    times.shrink_to_fit();
    return times;
}

}  // namespace

QStringList revisionsOf(const std::optional<QString> &branch)
{
    if (branch)
        return {*branch};
    return {QStringLiteral("--ignore-missing"), QStringLiteral("--branches"), QStringLiteral("HEAD")};
}

GitMemory::GitMemory(GitRunner &git, const FileTree &files, const Clock &clock, const QProcessEnvironment &inherited)
    : m_git(git)
    , m_files(files)
    , m_clock(clock)
    , m_places(placesIn(inherited))
{
}

void GitMemory::beginLook(const QString &path)
{
    forgetMoments();
    m_hasAsked = false;
    m_look.emplace(Look{path, takeCurrent(path), {}, {}, false, true});
    if (!m_look->known)
        m_look->selection = selectionOf(path);
}

std::optional<GitMemory::Memory> GitMemory::takeCurrent(const QString &path)
{
    auto found = m_memories.extract(path.toStdString());
    if (!found)
        return std::nullopt;
    auto memory = std::move(found.mapped());
    const auto age = m_clock.now() - memory.askedAt;
    const auto state = age >= 0ms && age < longestMemory ? stateOf(memory, path) : std::nullopt;
    if (!state || state->content != memory.state.content)
        return std::nullopt;
    memory.state = *state;
    return memory;
}

std::optional<RepositoryState> GitMemory::stateOf(const Memory &memory, const QString &path) const
{
    return repositoryState(m_files, QFile::encodeName(path).toStdString(), memory.branch, memory.config, m_places);
}

QByteArray GitMemory::answer(const QStringList &arguments, const QString &path)
{
    if (!m_look || m_look->path != path)
        return m_git.run(arguments, path).text;
    auto question = questionFor(arguments);
    if (auto known = remembered(question))
        return *known;
    return ask(arguments, std::move(question));
}

QList<WatchPlace> GitMemory::watchPlaces(const QString &path, const std::optional<QString> &branch) const
{
    if (m_look && m_look->path == path && m_look->known)
        return m_look->known->places;
    return velquarin::watchPlaces(m_files, QFile::encodeName(path).toStdString(), branch);
}

GitMemory::Log GitMemory::questionFor(const QStringList &arguments) const
{
    Log log;
    for (const auto &argument : arguments) {
        if (argument.startsWith(QLatin1String("--since=")))
            log.since = argument.mid(8);
        else if (argument.startsWith(QLatin1String("--until=")))
            log.until = argument.mid(8);
        else
            log.question += argument.toUtf8() + '\0';
    }
    log.window = windowOf(log);
    return log;
}

std::optional<GitMemory::Window> GitMemory::windowOf(const Log &log) const
{
    const auto since = momentOf(log.since);
    const auto until = momentOf(log.until);
    return since && until ? std::optional(Window{*since, *until}) : std::nullopt;
}

// The zone may be another one by now.
void GitMemory::forgetMoments() const
{
    ::tzset();
    m_moments.clear();
}

// Each date once a second and half of a look: libc looks at the system's zone each time.
std::optional<std::int64_t> GitMemory::momentOf(const QString &date) const
{
    const auto now = std::chrono::floor<std::chrono::seconds>(m_clock.now()).time_since_epoch().count();
    if (std::exchange(m_momentsAt, now) != now)
        m_moments.clear();
    if (!m_moments.contains(date))
        m_moments.insert(date, momentAt(date, now));
    return m_moments.value(date);
}

std::optional<QByteArray> GitMemory::remembered(const Log &question)
{
    if (!m_look->known)
        return std::nullopt;
    auto &known = *m_look->known;
    if (const auto found = known.answers.find(question.question); found != known.answers.end())
        return found->second;
    if (!question.window)
        return std::nullopt;
    if (!takeCommits(known, m_look->path)) {
        m_look->known.reset();
        return std::nullopt;
    }
    const auto found = std::ranges::find_if(known.logs, [&](const Log &log) {
        return log.question == question.question && isSame(known, log, *question.window);
    });
    if (found == known.logs.end())
        return std::nullopt;
    std::rotate(known.logs.begin(), found, found + 1);
    return known.logs.front().text;
}

// When the clock goes on, and no earlier: git walks through the whole history for them, and where the next look finds
// another commit nobody needs them any more. What is the same afterwards was the same while git listed them.
bool GitMemory::takeCommits(Memory &known, const QString &path)
{
    if (known.commits)
        return true;
    m_hasAsked = true;
    const QStringList question{QStringLiteral("rev-list"), QStringLiteral("--timestamp"),
                               QStringLiteral("--max-age=%1").arg(known.oldest)};
    const auto list = m_git.run(question + revisionsOf(known.branch) + QStringList{QStringLiteral("--")}, path);
    known.commits = list.exitStatus == 0 ? timesIn(list.text) : std::nullopt;
    return known.commits && stateOf(known, path) == known.state;
}

// Whether no commit lies between the ends of the windows: then the logs are the same. Of what is older than the list
// nothing is known.
bool GitMemory::isSame(const Memory &memory, const Log &log, const Window &window)
{
    const auto before = [&](std::int64_t moment) { return std::ranges::lower_bound(*memory.commits, moment); };
    const auto after = [&](std::int64_t moment) { return std::ranges::upper_bound(*memory.commits, moment); };
    return window.since >= memory.oldest &&
           std::ranges::all_of(std::array{*log.window, *log.windowAtEnd}, [&](const Window &other) {
               return before(window.since) == before(other.since) && after(window.until) == after(other.until);
           });
}

QByteArray GitMemory::ask(const QStringList &arguments, Log question)
{
    m_hasAsked = true;
    auto &fresh = m_look->fresh;
    const bool isRememberable = std::exchange(m_look->isRememberable, false);
    auto output = m_git.run(arguments, m_look->path);
    // It was read into more than it needs.
    output.text.squeeze();
    m_look->isRememberable = isRememberable && isAnswer(arguments.first(), output.exitStatus);
    if (question.since.isEmpty()) {
        fresh.answers.emplace(question.question, output.text);
    } else {
        question.text = output.text;
        m_look->isRememberable &= question.window.has_value();
        fresh.logs.push_back(std::move(question));
    }
    return output.text;
}

void GitMemory::readFrom(const std::optional<QString> &branch, const QString &path)
{
    if (m_look && m_look->path == path && !m_look->known && !std::exchange(m_look->isPrepared, true))
        prepare(branch);
}

// Before the first log: what is read now and is the same at the end was the same meanwhile. A branch was chosen earlier, by
// what was the same from the beginning of the look until after that reading.
void GitMemory::prepare(const std::optional<QString> &branch)
try {
    auto &fresh = m_look->fresh;
    fresh.branch = branch;
    if (!m_look->selection || !takeConfig())
        return;
    const auto state = stateOf(fresh, m_look->path);
    if (state && selectionOf(m_look->path) == m_look->selection)
        fresh.state = *state;
} catch (const LaunchError &) {
    // The log that follows says so.
}

std::optional<QByteArray> GitMemory::selectionOf(const QString &path) const
{
    return branchSelection(m_files, QFile::encodeName(path).toStdString(), m_places);
}

// Twice where files include others, since those may change between the question and our look at them.
bool GitMemory::takeConfig()
{
    const QStringList question{QStringLiteral("config"), QStringLiteral("--list"), QStringLiteral("-z"),
                               QStringLiteral("--show-origin")};
    const auto list = m_git.run(question, m_look->path);
    const auto folder = QFile::encodeName(m_look->path).toStdString();
    const auto config = list.exitStatus == 0 ? gitConfigFrom(list.text, folder, m_places) : std::nullopt;
    if (config)
        m_look->fresh.config = *config;
    return config && (!config->hasIncludes || m_git.run(question, m_look->path).text == list.text);
}

void GitMemory::endLook()
{
    forgetMoments();
    auto look = std::exchange(m_look, std::nullopt);
    const auto now = m_clock.now();
    std::erase_if(m_memories, [&](const auto &item) { return now - item.second.askedAt >= longestMemory; });
    if (!look->isRememberable)
        return;
    try {
        auto &memory = look->known ? *look->known : look->fresh;
        if (look->known ? addTo(memory, look->fresh, look->path) : complete(memory, look->path))
            m_memories.insert_or_assign(look->path.toStdString(), std::move(memory));
    } catch (const LaunchError &) {
        // Then nothing is remembered.
    }
}

bool GitMemory::addTo(Memory &known, Memory &fresh, const QString &path) const
{
    if (fresh.logs.empty() && fresh.answers.empty())
        return true;
    for (auto &log : fresh.logs) {
        log.windowAtEnd = windowOf(log);
        if (!log.windowAtEnd || log.window->since < known.oldest)
            return false;
        known.logs.insert(known.logs.begin(), std::move(log));
    }
    known.logs.resize(std::min(known.logs.size(), mostLogs));
    known.answers.merge(fresh.answers);
    return stateOf(known, path) == known.state;
}

bool GitMemory::complete(Memory &fresh, const QString &path) const
{
    if (fresh.state.content.isEmpty() || fresh.logs.empty())
        return false;
    fresh.askedAt = m_clock.now();
    fresh.places = watchPlaces(path, fresh.branch);
    fresh.oldest =
        std::ranges::min(fresh.logs, {}, [](const Log &log) { return log.window->since; }).window->since - slack;
    for (auto &log : fresh.logs)
        log.windowAtEnd = windowOf(log);
    const bool areWhole = std::ranges::all_of(fresh.logs, [](const Log &log) { return log.windowAtEnd.has_value(); });
    return areWhole && stateOf(fresh, path) == fresh.state;
}

}  // namespace velquarin
