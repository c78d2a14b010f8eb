"""Short form of the playback storm: the stream changes faster than it can open, and threads and files do not grow."""

import pytest

from tests.soak.playback_storm import Storm

ROUNDS = 40


@pytest.mark.time_limit(120)
def test_forty_changes_of_stream_leave_no_threads_or_files_and_a_playing_host(player_host, server):
    host = player_host(log=False)
    storm = Storm(host, server)
    storm.run(ROUNDS, seconds=90, between=10)
    assert storm.rounds == ROUNDS
    # Too few rounds to distinguish memory growth from noise; ./dev soak does that.
    assert storm.uneven() == []
    mark = host.client.mark()
    assert host.client.invoke("setMedia", {"url": server.url("test.ts"), "networkCacheMs": 300}) is True
    host.client.wait_for("onTimeChanged", lambda event: int(event.arguments) >= 500, after=mark)
    assert host.quit() == 0
