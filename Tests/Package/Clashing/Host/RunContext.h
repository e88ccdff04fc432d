#error "A header of the package took this project's own file for one of its own."
