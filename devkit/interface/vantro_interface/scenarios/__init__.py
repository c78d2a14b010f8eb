"""Scenarios that the interface simulator plays to a host."""
