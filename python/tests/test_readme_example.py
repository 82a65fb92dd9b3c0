"""The README's Python example (tests/consumer/example.py) runs and prints what
its comments say."""

import subprocess
import sys

from conftest import SOURCE_DIR


def test_readme_example_runs():
    out = subprocess.run([sys.executable, str(SOURCE_DIR / "tests" / "consumer" / "example.py")],
                         capture_output=True, check=True, text=True).stdout.split("\n")
    assert out[0] == "Command Block Wrapper"
    assert out[1].startswith("Reset [('OpCode-OCF', '0300'), ('OpCode-OGF', '03')")
    assert out[2].startswith("HCI_Inquiry [('OpCode-OCF', '0100'), ('OpCode-OGF', '01')")
