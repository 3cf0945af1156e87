"""Numbers that no library's next version can change."""


class Dice:
    def __init__(self, *seeds):
        self.state = 1
        for seed in seeds:
            for byte in str(seed).encode():
                self.state = (self.state * 1000003 + byte + 17) % (1 << 31)
            self.below(7)

    def below(self, limit):
        self.state = (self.state * 1103515245 + 12345) % (1 << 31)
        return (self.state >> 8) % limit

    def between(self, low, high):
        return low + self.below(high - low + 1)

    def pick(self, items):
        return items[self.below(len(items))]

    def digits(self, count):
        return str(self.between(1, 9)) + "".join(str(self.below(10)) for _ in range(count - 1))

    def distinct(self, count, make):
        """So many different results of `make`."""
        found = []
        while len(found) < count:
            item = make()
            if item not in found:
                found.append(item)
        return found
