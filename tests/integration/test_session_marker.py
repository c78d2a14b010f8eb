"""Tests the session marker of a process that dies, and what the next start reports to the user and the interface."""

import random

import pytest

from tests.support.marker import MarkerFile, expected_report, kill_during_calls, reports

SEED = 7


@pytest.fixture
def marker(wine_prefix):
    return MarkerFile(wine_prefix.temp)


def first_calls(client):
    """Returns the first two method calls of the host on this connection, once it has answered a request."""
    client.invoke("isPlaying")
    return [(event.method, event.arguments) for event in client.since()[:2]]


def die_and_start_again(host):
    """Ends the process abruptly after getPosition. Returns the client of the next process."""
    dying = host()
    dying.client.invoke("getPosition")
    dying.kill()
    return host().client


def test_a_process_that_dies_leaves_the_last_method_as_running(host, marker):
    dying = host()
    dying.client.invoke("getPosition")
    dying.kill()
    assert marker.read()[:2] == (True, "getPosition")


def test_the_start_after_a_death_reports_it_before_anything_else(host):
    client = die_and_start_again(host)
    assert first_calls(client) == expected_report("getPosition")


def test_a_death_is_reported_once(host):
    client = die_and_start_again(host)
    client.invoke("play")
    host.started[-1].quit()
    assert reports(host().client) == []


def test_a_second_death_right_after_the_start_names_the_startup(host):
    die_and_start_again(host)
    host.started[-1].kill()
    assert first_calls(host().client) == expected_report("startup")


def test_a_normal_end_reports_nothing(host, marker):
    vantro = host()
    vantro.client.invoke("getPosition")
    assert vantro.quit() == 0
    assert marker.read()[:2] == (False, "shutdown")
    assert reports(host().client) == []


def test_a_second_window_of_a_healthy_session_gets_the_report_and_the_first_none(host):
    client = host().client
    client.invoke("getDuration")
    mark = client.mark()
    assert host(connect=False).wait() == 0
    client.wait_for("appEvent", engine=2, after=mark)
    sent = [(event.engine, event.method, event.arguments) for event in client.since(mark)]
    assert sent[:2] == [(2, method, arguments) for method, arguments in expected_report("getDuration")]
    assert [entry for entry in sent if entry[0] == 1] == []


def test_a_running_marker_without_an_action_is_reported_as_unknown(host, marker):
    marker.write("running=true\n")
    assert first_calls(host().client) == expected_report("unknown")


def test_a_session_runs_with_a_temporary_folder_that_cannot_be_written(host, marker):
    marker.path.mkdir()  # no file with this name can be opened
    try:
        vantro = host()
        assert vantro.client.invoke("setMedia", {"url": "http://host/stream.ts"}) is True
        assert reports(vantro.client) == []
        assert vantro.quit() == 0
    finally:
        marker.path.rmdir()


@pytest.mark.time_limit(120)
def test_after_kills_at_random_moments_the_next_start_reports_what_the_marker_says(host, marker):
    moments = random.Random(SEED)
    for _ in range(5):
        possible = kill_during_calls(host(), moments)
        found = marker.read()
        # A write that was cut short by the death leaves nothing, which reads as a normal end.
        assert found is None or (found[0] and found[1] in possible)
        assert reports(host().client) == (expected_report(found[1]) if found else [])
        host.started[-1].quit()
