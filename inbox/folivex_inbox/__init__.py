"""The inbox: a folder whose PDFs are split as they arrive, each exactly once."""
