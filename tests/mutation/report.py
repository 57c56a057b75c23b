"""What is said of the mutants, one by one and all together."""

from pathlib import Path

import operators
from judge import Verdict

_SHOWN_TESTS = 12


def one_line(verdict: Verdict) -> str:
    """A line for a mutant as soon as it is judged."""
    what = {"killed": "killed  ", "survived": "SURVIVED", "refused": "refused "}[verdict.outcome]
    by = f" by {verdict.reason}" if verdict.reason else ""
    return f"{what} {verdict.mutant.describe()}{by} ({verdict.seconds:.1f} s)"


def survivor(verdict: Verdict, root: Path) -> str:
    """All about a mutant that no test noticed."""
    mutant = verdict.mutant
    text = (root / mutant.path).read_text(encoding="utf-8")
    pairs = zip(text.split("\n"), operators.apply(text, mutant.change).split("\n"))
    changed = [(before, after) for before, after in pairs if before != after]
    lines = [f"{mutant.path}:{mutant.line}: {mutant.operator}"]
    lines += [f"  - {before}" for before, _ in changed]
    lines += [f"  + {after}" for _, after in changed]
    if not verdict.ran:
        return "\n".join([*lines, "  no test reaches this line"])
    lines.append(f"  not noticed by {len(verdict.ran)} tests:")
    lines += [f"    {name}" for name in verdict.ran[:_SHOWN_TESTS]]
    if len(verdict.ran) > _SHOWN_TESTS:
        lines.append(f"    and {len(verdict.ran) - _SHOWN_TESTS} more")
    return "\n".join(lines)


def percentage(verdicts: list[Verdict]) -> float:
    """How many of the mutants that compile are killed."""
    killed = sum(1 for verdict in verdicts if verdict.outcome == "killed")
    judged = sum(1 for verdict in verdicts if verdict.outcome != "refused")
    return 100 * killed / judged if judged else 100


def summary(verdicts: list[Verdict], equivalents: int, seconds: float) -> str:
    """The numbers of a run."""
    count = {outcome: sum(1 for v in verdicts if v.outcome == outcome) for outcome in ("killed", "survived", "refused")}
    by_time = sum(1 for verdict in verdicts if verdict.timed_out)
    lines = [
        f"{count['killed'] + count['survived']} mutants: {count['killed']} killed ({percentage(verdicts):.0f} %),"
        f" {count['survived']} survived",
        f"  killed by the time limit: {by_time}",
        f"  not counted, as they do not compile: {count['refused']}",
        f"  left out, as they are known to be equivalent: {equivalents}",
        f"  {seconds:.0f} s",
    ]
    return "\n".join(lines)
