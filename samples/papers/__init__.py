"""Piles of papers as offices get them, each kind of its own make, with what is true of them."""
