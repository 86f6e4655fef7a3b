"""Imports: what they tell, how they end, and that there is one at a time."""

import os
import signal
import threading

import pytest
from conftest import SAMPLES, SOURCE

import intake

WORLD = dict(SAMPLES)["wcr.e00"]


def test_messages_come_as_they_are_given_and_with_the_result(tmp_path):
    heard = []
    done = intake.import_file(WORLD, tmp_path / "WORLD", heard.append)
    assert done.kind == "Coverage" and done.whole
    assert tuple(heard) == done.messages
    assert heard[0].level is intake.Level.INFORM and "Creating Coverage" in heard[0].text


def test_an_import_that_fails_raises_with_its_messages(tmp_path):
    broken = tmp_path / "broken.e00"
    broken.write_bytes(WORLD.read_bytes()[:20000])
    with pytest.raises(intake.ImportFailed) as failure:
        intake.import_file(broken, tmp_path / "BROKEN")
    assert failure.value.messages[-1].level >= intake.Level.NONFATAL
    assert failure.value.messages[-1].text in str(failure.value)
    # What was read until then stays.
    with intake.open(tmp_path / "BROKEN") as kept:
        assert 0 < len(kept.arcs) < 230
    with pytest.raises(intake.ImportFailed):
        intake.import_file(tmp_path / "none.e00", tmp_path / "NONE")


def test_an_exception_of_the_listener_stops_the_import(tmp_path, large):
    def refuse(message):
        raise LookupError(message.text)

    with pytest.raises(LookupError, match="Creating"):
        intake.import_file(large, tmp_path / "LARGE", refuse)
    with intake.open(tmp_path / "LARGE") as kept:
        assert len(kept.arcs) < 5000
    # The wish to stop ends with the import.
    assert intake.import_file(WORLD, tmp_path / "WORLD").whole


def test_ctrl_c_stops_the_import_and_the_handler_stays(tmp_path, large):
    # What a shell begins in the background has Ctrl-C ignored.
    before = signal.signal(signal.SIGINT, signal.default_int_handler)
    try:
        with pytest.raises(KeyboardInterrupt):
            intake.import_file(
                large, tmp_path / "LARGE", lambda message: os.kill(os.getpid(), signal.SIGINT)
            )
        with intake.open(tmp_path / "LARGE") as kept:
            assert len(kept.arcs) < 5000
        assert signal.getsignal(signal.SIGINT) is signal.default_int_handler
    finally:
        signal.signal(signal.SIGINT, before)


def test_an_import_within_an_import_is_refused(tmp_path):
    with pytest.raises(RuntimeError, match="running"):
        intake.import_file(
            WORLD, tmp_path / "A", lambda message: intake.import_file(WORLD, tmp_path / "B")
        )


def test_imports_of_several_threads_follow_one_another(tmp_path):
    results = {}

    def work(name):
        results[name] = intake.import_file(WORLD, tmp_path / name)

    threads = [threading.Thread(target=work, args=(f"W{each}",)) for each in range(4)]
    for each in threads:
        each.start()
    for each in threads:
        each.join()
    assert len(results) == 4 and all(each.whole for each in results.values())
    for name in results:
        with intake.open(tmp_path / name) as world:
            assert len(list(world.arcs)) == len(world.arcs) > 0


def test_what_was_open_before_an_import_says_that_it_was_closed(tmp_path, sample):
    world = intake.open(sample("wcr"))
    arcs = iter(world.arcs)
    first = next(arcs)
    intake.import_file(SOURCE / "samples/ctry.e00", tmp_path / "CTRY")
    with pytest.raises(intake.StaleError):
        next(arcs)
    assert first.vertices.shape[1] == 2  # what was read stays
    assert len(list(world.arcs)) == len(world.arcs)
    world.close()
