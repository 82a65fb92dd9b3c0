"""decoders(), fields() and formats() list what 'busdecode list' and
'busdecode fields' print."""

import os
import re
import subprocess

import pytest

import busdecode
from conftest import ALIASES

FIELD = re.compile(r'^(\d+)  "(.*)"  abbr "(.*)"  offset (\d+)  length (\d+)$')
OPTION = re.compile(r'^    option (\d+): 0x([0-9A-Fa-f]+)(?:\.\.0x([0-9A-Fa-f]+))?  "(.*?)"(?: / "(.*)")?$')
FORMAT = re.compile(r'^format (\d+)  "(.*)"$')


def tool_text(*args):
    path = os.environ.get("BUSDECODE_TOOL")
    if not path or not os.path.exists(path):
        pytest.skip("BUSDECODE_TOOL does not name the busdecode tool")
    return subprocess.run([path, *args], capture_output=True, check=True).stdout.decode("utf-8").split("\n")


def quoted(text):
    """The tool's quoting inside its quotes: control characters as \\xNN."""
    return "".join(f"\\x{ord(c):02x}" if ord(c) < 0x20 or ord(c) == 0x7F else c for c in text)


def test_decoders_as_the_tool_lists_them():
    rows = [line.split() for line in tool_text("list")[1:] if line]
    listed = [
        [d["name"], d["alias"], f"{d['first_id']}-{d['last_id']}" if d["field_count"] else "-", str(d["field_count"])]
        for d in busdecode.decoders()
    ]
    assert listed == rows


@pytest.mark.parametrize("alias", ALIASES)
def test_fields_and_formats_as_the_tool_prints_them(alias):
    fields, formats = [], {}
    for line in tool_text("fields", alias)[1:]:
        if m := FIELD.match(line):
            fields.append({"id": int(m[1]), "name": m[2], "abbr": m[3], "offset": int(m[4]), "length": int(m[5]),
                           "description": "", "options": []})
        elif m := OPTION.match(line):
            low = int(m[2], 16)
            fields[-1]["options"].append({"id": int(m[1]), "low": low, "high": int(m[3], 16) if m[3] else low,
                                          "name": m[4], "abbr": m[5] if m[5] is not None else m[4]})
        elif m := FORMAT.match(line):
            formats[int(m[1])] = m[2]
        elif line.startswith("    "):
            fields[-1]["description"] = line[4:]
        else:
            assert not line, line

    ours = []
    for f in busdecode.fields(alias):
        ours.append({
            "id": f["id"], "name": quoted(f["name"]), "abbr": quoted(f["abbr"]), "offset": f["offset"],
            "length": f["length"], "description": f["description"],
            "options": [dict(o, name=quoted(o["name"]), abbr=quoted(o["abbr"])) for o in f["options"]],
        })
    assert ours == fields
    assert busdecode.formats(alias) == formats
