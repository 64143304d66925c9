// placeholder translation unit for a folder library without classes yet
