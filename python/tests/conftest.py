"""Shared helpers of the module's tests: the tool to compare with, the sample
payloads, and the tool's JSON for a list of payloads."""

import json
import os
import pathlib
import subprocess

import pytest

import busdecode

SOURCE_DIR = pathlib.Path(os.environ.get("BUSDECODE_SOURCE_DIR", pathlib.Path(__file__).resolve().parents[2]))
CAPTURES_DIR = SOURCE_DIR.parent / "shared" / "captures"
ALIASES = [d["alias"] for d in busdecode.decoders()]


def read_payloads(path):
    """The payloads of a sample file: one hex line each, '#' lines and blank lines skipped."""
    lines = pathlib.Path(path).read_text().split("\n")
    return [bytes.fromhex(line) for line in lines if line.strip() and not line.lstrip().startswith("#")]


def sample_files():
    return sorted((SOURCE_DIR / "samples").glob("*.txt"))


def all_sample_payloads():
    return [p for f in sample_files() for p in read_payloads(f)]


@pytest.fixture(scope="session")
def tool():
    """Runs the busdecode tool; the JSON lines of its output as dicts."""
    path = os.environ.get("BUSDECODE_TOOL")
    if not path or not os.path.exists(path):
        pytest.skip("BUSDECODE_TOOL does not name the busdecode tool")

    def run(*args, payloads=None, tmp_dir=None):
        command = [path, "--json", *args]
        if payloads is not None:
            listing = pathlib.Path(tmp_dir) / "payloads.txt"
            listing.write_text("".join(p.hex() + "\n" for p in payloads))
            command += ["-f", str(listing)]
        out = subprocess.run(command, capture_output=True, check=True).stdout.decode("utf-8")
        # Only "\n" ends a line: texts may hold other line-breaking characters.
        return [json.loads(line) for line in out.split("\n") if line]

    return run


@pytest.fixture(scope="session")
def tool_error():
    """The one-line message of a tool run that fails, without its prefix."""
    path = os.environ.get("BUSDECODE_TOOL")
    if not path or not os.path.exists(path):
        pytest.skip("BUSDECODE_TOOL does not name the busdecode tool")

    def run(*args):
        result = subprocess.run([path, "--json", *args], capture_output=True)
        assert result.returncode == 2, result
        message = result.stderr.decode("utf-8").strip()
        assert message.startswith("busdecode: error: ")
        return message[len("busdecode: error: "):]

    return run
