"""What the tests of documents, house and installation share: a choice of checks, each of which gives the faults it finds."""
import argparse
import sys
from pathlib import Path


def run(description, checks):
    """Runs the check named on the command line: checks[name](args)."""
    parser = argparse.ArgumentParser(description=description, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("check", choices=checks)
    parser.add_argument("--source", required=True, type=lambda path: Path(path).resolve())
    parser.add_argument("--build", type=lambda path: Path(path).resolve())
    parser.add_argument("--engine")
    parser.add_argument("--uci", help="ondrel-uci, where it was built")
    args = parser.parse_args()
    faults = checks[args.check](args)
    for fault in faults:
        print("FAILED:", fault)
    sys.exit(1 if faults else 0)
