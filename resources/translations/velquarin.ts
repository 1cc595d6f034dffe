<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" sourcelanguage="en">
<context>
    <name>Reminder</name>
    <message>
        <source>Open</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>You haven&apos;t committed today. Your %1-day streak will reset at midnight!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Streak at Risk!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open Velquarin</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ScanOutcome</name>
    <message>
        <source>No git repositories found in selected folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Found %1 repos, all already tracked</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>StatusItem</name>
    <message>
        <source>Syncing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Velquarin</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open Velquarin</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No streak yet</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1-day streak</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No commit today yet</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Committed today</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Waiting for git in %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Everyone&apos;s commits count in %1: git knows no address of yours there</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Everyone&apos;s commits count in %1 and %2 more: git knows no address of yours there</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>YearHeatmapView</name>
    <message>
        <source>%1: %2 commit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1: %2 commits</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>velquarin::AppDelegate</name>
    <message>
        <source>Refresh</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quit Velquarin</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>velquarin::FooterSection</name>
    <message>
        <source>Refresh</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Updated %1 ago</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>velquarin::GeneralTab</name>
    <message>
        <source>Every minute</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Every 5 minutes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Every 15 minutes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Every 30 minutes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Every hour</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Startup</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Launch at login</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Display</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Show streak count in menu bar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Notifications</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Re&amp;mind me if streak is at risk</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Get notified in the evening if you haven&apos;t committed today</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Check for new commits</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>About</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Version</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>General</source>
        <extracomment>The tab of that name, to a screen reader that comes to its scroll bar.</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>By everyone, default branch</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>By me, default branch</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>By everyone, all branches</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>By me, all branches</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>C&amp;ount commits</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>velquarin::HeaderSection</name>
    <message>
        <source>day streak</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Longest</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This week</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Repos</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Today</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 days</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 commits</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 tracked</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Committed!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No commits yet</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 %2, %3</source>
        <extracomment>What a screen reader says when the dashboard opens: &quot;12 day streak, Committed!&quot;</extracomment>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>velquarin::RecordRow</name>
    <message>
        <source>Remove</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>velquarin::RepoRow</name>
    <message>
        <source>%1 today</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>velquarin::RepositoriesSection</name>
    <message>
        <source>No repositories configured</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Repositories</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>+%1 more</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>velquarin::RepositoriesTab</name>
    <message>
        <source>Tracked Repositories</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No Repositories</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add git repositories to track your commit streak</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add Repository</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A&amp;dd Repository</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Scan Folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Re&amp;fresh Now</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 repos</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>velquarin::RepositoryActions</name>
    <message>
        <source>Select a git repository folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select a folder to scan for git repositories</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Scan</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Selected folder is not a git repository</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Scanning...</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>velquarin::RepositoryRow</name>
    <message>
        <source>Auto</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>velquarin::RepositoryStats</name>
    <message>
        <source>No commits</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>velquarin::SettingsView</name>
    <message>
        <source>Settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Repositories</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Auto-Discover</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;General</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>velquarin::WatchedFolderActions</name>
    <message>
        <source>Select a folder to watch for git repositories</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Watch</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This folder is already being watched</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>velquarin::WatchedFolderRow</name>
    <message>
        <source>Depth</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Max folder depth to scan</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>velquarin::WatchedFoldersTab</name>
    <message>
        <source>Automatically find and track git repositories in these folders</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Watched Folders</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Auto-discover re&amp;pos</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No Watched Folders</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add folders to automatically discover new git repositories</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add Folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A&amp;dd Folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Scanning...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Scan Now</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Recently discovered:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Last scan: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>...and %1 more</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>velquarin::WeekSection</name>
    <message>
        <source>Last 7 Days</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show Year</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>velquarin::YearHeatmapView</name>
    <message>
        <source>Last 365 Days</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>velquarin::YearSection</name>
    <message>
        <source>Last 365 Days</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Back</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>•</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 commits</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 active days</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
