"""The chart of docs/benchmarks.md: a panel for each case, a bar for each way."""

MOST = 10  # times the program's time: a longer bar is cut, since the others would be too short to compare
PROGRAM, OTHER, TEXT = "#1f5f8b", "#b9c4cc", "#333333"


def draw(cases, path):
    """Each case is its title and the seconds of its ways by their names, the program's first."""
    import matplotlib  # imported here, so that only drawing needs the package

    matplotlib.use("Agg")
    matplotlib.rcParams["svg.fonttype"] = "none"  # letters stay text: as paths they are most of the file
    matplotlib.rcParams["svg.hashsalt"] = "benchmarks"  # the same file for the same figures
    from matplotlib import pyplot

    heights = [len(ways) + 1.2 for _, ways in cases]
    figure, panels = pyplot.subplots(len(cases), 1, figsize=(9, 0.27 * sum(heights)), squeeze=False,
                                     gridspec_kw={"height_ratios": heights}, layout="constrained")
    for panel, (title, ways) in zip(panels[:, 0], cases):
        _draw(panel, title, ways)
    figure.supxlabel("seconds from start to exit, median of the rounds; shorter is better", fontsize=8, color=TEXT)
    figure.savefig(path, metadata={"Date": None})
    pyplot.close(figure)


def _draw(panel, title, ways):
    names = [name for name, _ in ways]
    seconds = [taken for _, taken in ways]
    end = 1.1 * max(taken for taken in seconds if taken <= MOST * seconds[0])
    bars = panel.barh(names, [min(taken, end) for taken in seconds], color=[PROGRAM] + [OTHER] * (len(ways) - 1), height=0.72)
    labels = [f"{taken:.2f}" + (" (bar is cut)" if taken > end else "") for taken in seconds]
    panel.bar_label(bars, labels, padding=3, fontsize=8, color=TEXT)
    panel.invert_yaxis()
    panel.set_title(title, loc="left", fontsize=9, fontweight="bold", color=TEXT)
    panel.set_xlim(0, end * 1.12)
    panel.tick_params(axis="y", length=0, labelsize=8, labelcolor=TEXT)
    panel.tick_params(axis="x", bottom=False, labelbottom=False)
    panel.spines[:].set_visible(False)
