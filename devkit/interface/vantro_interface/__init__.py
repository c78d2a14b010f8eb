"""The interface's side of the loopback engine: codec, client, and a host run under Wine. Standard library only."""
