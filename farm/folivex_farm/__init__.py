"""The farm: many sources, or the parts of a huge one, split by many machines, and published by one."""
