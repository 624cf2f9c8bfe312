complete -W "--hintergrund --bild --help --version" kalvaro
