# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The program's preferences file, written before it starts and read afterwards."""

import datetime
import json
import uuid


def _path(config_folder):
    return config_folder / "velquarin" / "preferences.json"


def _record(path):
    return {"id": str(uuid.uuid4()).upper(), "path": str(path), "name": path.name, "isEnabled": True,
            "isAutoDiscovered": False}


def write(config_folder, repository_paths, refresh_seconds=86400):
    """Settings with these repositories; nothing acts by itself during a test that does not ask for it."""
    file = _path(config_folder)
    file.parent.mkdir(parents=True, exist_ok=True)
    records = [_record(path) for path in repository_paths]
    file.write_text(json.dumps({
        "autoDiscoveryEnabled": False,
        "refreshInterval": refresh_seconds,
        "trackedRepositories": {"data": json.dumps(records)},
    }))


def write_defaults(config_folder, repository_paths, folder_paths=()):
    """Settings with these repositories and watched folders, all else as the program has it at first."""
    file = _path(config_folder)
    file.parent.mkdir(parents=True, exist_ok=True)
    folders = [{"id": str(uuid.uuid4()).upper(), "path": str(path), "name": path.name, "isEnabled": True, "maxDepth": 5}
               for path in folder_paths]
    file.write_text(json.dumps({
        "trackedRepositories": {"data": json.dumps([_record(path) for path in repository_paths])},
        "watchedFolders": {"data": json.dumps(folders)},
    }))


def add(config_folder, key, value):
    """One more setting, in a file that was written before."""
    _path(config_folder).write_text(json.dumps({**read(config_folder), key: value}))


def read(config_folder):
    """All that is stored; nothing as long as there is no file."""
    file = _path(config_folder)
    return json.loads(file.read_text()) if file.exists() else {}


def records(config_folder, key):
    """A stored list, whose ids are told apart from the rest: the ids in order, and the records without them. One that is
    not stored yet is empty."""
    stored = json.loads(read(config_folder).get(key, {"data": "[]"})["data"])
    return [record.pop("id") for record in stored], stored


def last_reminder(config_folder):
    """The moment of the last reminder, or None."""
    stored = read(config_folder).get("lastStreakRiskNotification")
    return stored and datetime.datetime.fromisoformat(stored["date"].replace("Z", "+00:00"))
